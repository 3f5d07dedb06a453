#include <simulator/modem/Commands.h>

#include <algorithm>
#include <string>

namespace kxsim {
namespace {

bool IsNumberList(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char byte) {
    return byte == ',' || (byte >= '0' && byte <= '9');
  });
}

bool IsChoice(std::string_view choices, std::string_view text) {
  while (!choices.empty()) {
    const size_t bar = std::min(choices.find('|'), choices.size());
    if (choices.substr(0, bar) == text) return true;
    choices.remove_prefix(std::min(bar + 1, choices.size()));
  }
  return false;
}

Outcome TellKept(ModemState& state, const Command& command, std::string_view) {
  const auto found = state.stored.find(command.name);
  return Told(command, found == state.stored.end() ? command.initial : found->second);
}

Outcome Keep(ModemState& state, const Command& command, std::string_view value) {
  const bool fits =
      command.choices.empty() ? IsNumberList(value) : IsChoice(command.choices, value);
  if (!fits) return Refused(kIncorrectParameters);
  state.stored[std::string(command.name)] = value;
  return Done();
}

// A command that keeps what it is given, if that is one of the choices, or, where there are none,
// any list of numbers.
constexpr Command Kept(std::string_view name, std::string_view initial, std::string_view choices,
                       std::string_view range) {
  return {.name = name,
          .read = TellKept,
          .set = Keep,
          .test = ListRange,
          .range = range,
          .initial = initial,
          .choices = choices};
}

Outcome Service(ModemState& state, const Command& command, std::string_view) {
  return Told(command, std::to_string(state.profile->radio.service));
}

constexpr Command kGsm[] = {
    Kept("+CSCS", "\"GSM\"", "\"GSM\"|\"IRA\"", "(\"GSM\",\"IRA\")"),
    Kept("+CMGF", "0", "0|1", "(0,1)"),
    Kept("+CNMI", "0,0,0,0,0", "", "(0-3),(0-3),(0,2,3),(0-2),(0,1)"),
    Kept("+CRC", "0", "0|1", "(0,1)"),
};

constexpr Command kCdma[] = {
    Kept("+CRM", "0", "0|1|2", "(0-2)"),
    Kept("+CSO", "33", "", "(12,33)"),
    {.name = "+CAD", .read = Service, .test = ListRange, .range = "(0-3)"},
};

constexpr Command kQualcomm[] = {
    Kept("$QCMDR", "3", "0|1|2|3", "(0-3)"),
    Kept("$QCQNC", "0", "0|1", "(0,1)"),
    Kept("$QCSCRM", "1", "0|1", "(0,1)"),
    Kept("$QCMIP", "1", "0|1|2", "(0-2)"),
};

}  // namespace

std::span<const Command> StoredCommands() { return kGsm; }

std::span<const Command> CdmaCommands() { return kCdma; }

std::span<const Command> QualcommCommands() { return kQualcomm; }

}  // namespace kxsim
