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

Outcome Told(const Command& command, std::string_view value) {
  return Info(std::string(command.name) + ": " + std::string(value));
}

Outcome ListRange(ModemState&, const Command& command, std::string_view) {
  return Told(command, command.range);
}

Outcome Known(ModemState&, const Command&, std::string_view) { return Done(); }

std::optional<int> NumberUpTo(int highest, std::string_view text) {
  const std::optional<int> number = ToNumber(text);
  return number && *number >= 0 && *number <= highest ? number : std::nullopt;
}

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
