#include <simulator/modem/Commands.h>

#include <algorithm>

namespace kxsim {
namespace {

// Commands that come with a family; "" is what every device knows.
struct Family {
  const char* name;
  std::span<const Command> (*commands)();
};

constexpr Family kFamilies[] = {
    {"", BasicCommands},     {"", CallCommands},
    {"", IdentityCommands},  {"gsm", GsmIdentityCommands},
    {"gsm", SimCommands},    {"gsm", NetworkCommands},
    {"gsm", StoredCommands}, {"gprs", PacketCommands},
    {"cdma", CdmaReadings},  {"gprs", PacketRegistrationCommands},
    {"cdma", CdmaCommands},  {"qualcomm", QualcommCommands},
};

}  // namespace

const Command* FindCommand(const ModemState& state, std::string_view name) {
  for (const Family& family : kFamilies) {
    if (*family.name != '\0' && !state.Has(family.name)) continue;
    const std::span<const Command> commands = family.commands();
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [=](const Command& each) { return each.name == name; });
    if (found != commands.end()) return &*found;
  }
  return nullptr;
}

}  // namespace kxsim
