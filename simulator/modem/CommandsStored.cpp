#include <simulator/modem/Commands.h>

#include <algorithm>
#include <string>

namespace kxsim {
namespace {

// A command that keeps what it is given, if that fits the pattern: one of the choices, or any
// list of numbers when there are none.
struct Kept {
  char name[10];
  char initial[16];
  char choices[40];  // parted by "|"
  char range[48];    // what the test form lists
};

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

template <Kept kept>
constexpr Command Keeper() {
  return {
      .name = kept.name,
      .test = [](ModemState&,
                 std::string_view) { return Info(kept.name + (": " + std::string(kept.range))); },
      .read =
          [](ModemState& state, std::string_view) {
            const auto entry = state.stored.try_emplace(kept.name, kept.initial).first;
            return Info(kept.name + (": " + entry->second));
          },
      .set =
          [](ModemState& state, std::string_view value) {
            const bool fits =
                kept.choices[0] == '\0' ? IsNumberList(value) : IsChoice(kept.choices, value);
            if (!fits) return Refused(kIncorrectParameters);
            state.stored[kept.name] = value;
            return Done();
          }};
}

}  // namespace

std::span<const Command> StoredCommands() {
  static constexpr Command kCommands[] = {
      Keeper<Kept{"+CSCS", "\"GSM\"", "\"GSM\"|\"IRA\"", "(\"GSM\",\"IRA\")"}>(),
      Keeper<Kept{"+CMGF", "0", "0|1", "(0,1)"}>(),
      Keeper<Kept{"+CNMI", "0,0,0,0,0", "", "(0-3),(0-3),(0,2,3),(0-2),(0,1)"}>(),
      Keeper<Kept{"+CRC", "0", "0|1", "(0,1)"}>(),
  };
  return kCommands;
}

std::span<const Command> CdmaCommands() {
  static constexpr Command kCommands[] = {
      Keeper<Kept{"+CRM", "0", "0|1|2", "(0-2)"}>(),
      Keeper<Kept{"+CSO", "33", "", "(12,33)"}>(),
      {.name = "+CAD",
       .test = [](ModemState&, std::string_view) { return Info("+CAD: (0-3)"); },
       .read =
           [](ModemState& state, std::string_view) {
             return Info("+CAD: " + std::to_string(state.profile->radio.service));
           }},
  };
  return kCommands;
}

std::span<const Command> QualcommCommands() {
  static constexpr Command kCommands[] = {
      Keeper<Kept{"$QCMDR", "3", "0|1|2|3", "(0-3)"}>(),
      Keeper<Kept{"$QCQNC", "0", "0|1", "(0,1)"}>(),
      Keeper<Kept{"$QCSCRM", "1", "0|1", "(0,1)"}>(),
      Keeper<Kept{"$QCMIP", "1", "0|1|2", "(0-2)"}>(),
  };
  return kCommands;
}

}  // namespace kxsim
