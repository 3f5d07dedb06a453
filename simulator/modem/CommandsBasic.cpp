#include <simulator/modem/Commands.h>

#include <algorithm>
#include <string>

namespace kxsim {
namespace {

// The number of a basic command: none is 0.
std::optional<int> Parameter(const Command& command, std::string_view parameters) {
  return NumberUpTo(command.highest, parameters.empty() ? "0" : parameters);
}

Outcome Choose(ModemState& state, const Command& command, std::string_view parameters) {
  const std::optional<int> value = Parameter(command, parameters);
  if (!value) return Refused();
  state.settings[command.setting] = *value;
  return Done();
}

// What a plain modem accepts and a radio has no use for.
Outcome Accept(ModemState&, const Command& command, std::string_view parameters) {
  return Parameter(command, parameters) ? Done() : Refused();
}

Outcome Reset(ModemState& state, const Command&, std::string_view) {
  state.settings = state.kept;
  state.errorReports = 0;
  state.call->End();
  return Done();
}

Outcome Factory(ModemState& state, const Command&, std::string_view) {
  state.settings = FactorySettings(*state.profile);
  state.errorReports = 0;
  return Done();
}

Outcome Keep(ModemState& state, const Command&, std::string_view) {
  state.kept = state.settings;
  return Done();
}

std::string Padded(int number, size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

// What AT&V shows of the settings, and of the registers behind them.
struct Shown {
  const char* name;
  Setting setting;
};

constexpr Shown kShown[] = {{"E", kEcho},         {"Q", kQuiet},    {"V", kVerbose},
                            {"X", kConnectTexts}, {"&C", kCarrier}, {"&D", kTerminalReady}};
constexpr int kShownRegisters[] = {kAutoAnswer, kEscapeCharacter, kEndOfLine,
                                   kLineFeed,   kBackspace,       kGuardTime};

Outcome View(ModemState& state, const Command&, std::string_view) {
  const Settings& now = state.settings;
  std::string text = "ACTIVE PROFILE:";
  for (const Shown& each : kShown) {
    text +=
        (&each == kShown ? "\n" : " ") + std::string(each.name) + std::to_string(now[each.setting]);
  }
  for (const int& number : kShownRegisters) {
    text += (&number == kShownRegisters ? "\nS" : " S") + Padded(number, 2) + ":" +
            Padded(now.registers[static_cast<size_t>(number)], 3);
  }
  return Info(text);
}

Outcome Page(ModemState& state, const Command& command, std::string_view parameters) {
  const std::optional<int> wanted = Parameter(command, parameters);
  for (const auto& [number, text] : state.profile->identity.pages) {
    if (number == wanted) return Info(text);
  }
  return Refused();
}

Outcome ListSpeeds(ModemState& state, const Command& command, std::string_view) {
  const LineSettings& line = state.profile->line;
  std::string list = line.autobaud ? "0" : "";
  for (const int speed : line.speeds) list += (list.empty() ? "" : ",") + std::to_string(speed);
  return Told(command, "(),(" + (list.empty() ? std::to_string(line.baud) : list) + ")");
}

Outcome TellSpeed(ModemState& state, const Command& command, std::string_view) {
  return Told(command, std::to_string(state.speed));
}

bool TakesSpeed(const LineSettings& line, int speed) {
  if (line.speeds.empty()) return speed == line.baud;
  return std::find(line.speeds.begin(), line.speeds.end(), speed) != line.speeds.end();
}

Outcome SetSpeed(ModemState& state, const Command&, std::string_view parameters) {
  const LineSettings& line = state.profile->line;
  const std::optional<int> speed = ToNumber(parameters);
  if (!speed || (*speed != 0 && !TakesSpeed(line, *speed))) return Refused();
  if (!line.moves) return Done();
  state.speed = *speed;
  return {.newSpeed = true};
}

Outcome DataOnly(ModemState&, const Command&, std::string_view) { return Info("0"); }

Outcome SetClass(ModemState&, const Command&, std::string_view parameters) {
  return parameters == "0" ? Done() : Refused();
}

constexpr Command kCommands[] = {
    {.name = "E", .execute = Choose, .setting = kEcho, .highest = 1},
    {.name = "V", .execute = Choose, .setting = kVerbose, .highest = 1},
    {.name = "Q", .execute = Choose, .setting = kQuiet, .highest = 1},
    {.name = "X", .execute = Choose, .setting = kConnectTexts, .highest = 4},
    {.name = "&C", .execute = Choose, .setting = kCarrier, .highest = 1},
    {.name = "&D", .execute = Choose, .setting = kTerminalReady, .highest = 2},
    {.name = "&K", .execute = Choose, .setting = kFlow, .highest = 6},
    {.name = "L", .execute = Accept, .highest = 3},
    {.name = "M", .execute = Accept, .highest = 3},
    {.name = "&S", .execute = Accept, .highest = 1},
    {.name = "Z", .execute = Reset},
    {.name = "&F", .execute = Factory},
    {.name = "&W", .execute = Keep},
    {.name = "&V", .execute = View},
    {.name = "I", .execute = Page, .highest = 9},
    {.name = "+FCLASS", .read = DataOnly, .set = SetClass, .test = DataOnly},
    {.name = "+IPR", .read = TellSpeed, .set = SetSpeed, .test = ListSpeeds},
};

}  // namespace

std::span<const Command> BasicCommands() { return kCommands; }

Outcome RunRegister(ModemState& state, const Invocation& command) {
  const std::optional<int> number =
      NumberUpTo(kRegisters - 1, std::string_view(command.name).substr(1));
  if (!number) return Refused();
  int& value = state.settings.registers[static_cast<size_t>(*number)];
  if (command.form == Form::kRead) return Info(Padded(value, 3));
  const bool isByte = *number == kEndOfLine || *number == kLineFeed || *number == kBackspace;
  const std::optional<int> wanted = NumberUpTo(isByte ? 127 : 255, command.parameters);
  if (command.form != Form::kSet || !wanted) return Refused();
  value = *wanted;
  return Done();
}

}  // namespace kxsim
