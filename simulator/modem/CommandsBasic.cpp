#include <simulator/modem/Commands.h>

#include <string>

namespace kxsim {
namespace {

int Parameter(std::string_view parameters) { return ToNumber(parameters).value_or(0); }

// A setting between 0 and a highest value.
template <auto setting, int highest>
Outcome Choose(ModemState& state, std::string_view parameters) {
  const int value = Parameter(parameters);
  if (value > highest) return Refused();
  state.settings.*setting = static_cast<std::decay_t<decltype(state.settings.*setting)>>(value);
  return Done();
}

// What a plain modem accepts and a radio has no use for.
template <int highest>
Outcome Accept(ModemState&, std::string_view parameters) {
  return Parameter(parameters) > highest ? Refused() : Done();
}

Outcome Reset(ModemState& state, std::string_view) {
  state.settings = state.kept;
  state.errorReports = 0;
  return {.call = CallAction::kEnd};
}

Outcome Factory(ModemState& state, std::string_view) {
  state.settings = FactorySettings(*state.profile);
  state.errorReports = 0;
  return Done();
}

Outcome Keep(ModemState& state, std::string_view) {
  state.kept = state.settings;
  return Done();
}

Outcome View(ModemState& state, std::string_view) {
  const Settings& now = state.settings;
  std::string text = "ACTIVE PROFILE:\nE" + std::to_string(now.echo) + " Q" +
                     std::to_string(now.quiet) + " V" + std::to_string(now.verbose) + " X" +
                     std::to_string(now.connectTexts) + " &C" + std::to_string(now.carrier) +
                     " &D" + std::to_string(now.terminalReady) + "\n";
  for (const int number : {0, 2, 3, 4, 5, 12}) {
    const std::string digits = std::to_string(number);
    const std::string value = std::to_string(now.registers[static_cast<size_t>(number)]);
    text += "S" + std::string(2 - digits.size(), '0') + digits + ":" +
            std::string(3 - value.size(), '0') + value + " ";
  }
  text.pop_back();
  return Info(text);
}

Outcome Page(ModemState& state, std::string_view parameters) {
  for (const auto& [number, text] : state.profile->identity.pages) {
    if (number == Parameter(parameters)) return Info(text);
  }
  return Refused();
}

std::string SpeedList(const ModemState& state) {
  std::string list = state.profile->line.autobaud ? "0" : "";
  for (const int speed : state.profile->line.speeds) {
    list += (list.empty() ? "" : ",") + std::to_string(speed);
  }
  return list.empty() ? std::to_string(state.profile->line.baud) : list;
}

bool TakesSpeed(const ModemState& state, int speed) {
  const LineSettings& line = state.profile->line;
  if (line.speeds.empty()) return speed == line.baud;
  for (const int each : line.speeds) {
    if (each == speed) return true;
  }
  return false;
}

Outcome SetSpeed(ModemState& state, std::string_view parameters) {
  const std::optional<int> speed = ToNumber(parameters);
  if (!speed || (*speed != 0 && !TakesSpeed(state, *speed))) return Refused();
  if (!state.profile->line.moves) return Done();
  state.speed = *speed;
  return {.newSpeed = true};
}

constexpr Command kCommands[] = {
    {.name = "E", .execute = Choose<&Settings::echo, 1>},
    {.name = "V", .execute = Choose<&Settings::verbose, 1>},
    {.name = "Q", .execute = Choose<&Settings::quiet, 1>},
    {.name = "X", .execute = Choose<&Settings::connectTexts, 4>},
    {.name = "&C", .execute = Choose<&Settings::carrier, 1>},
    {.name = "&D", .execute = Choose<&Settings::terminalReady, 2>},
    {.name = "&K", .execute = Choose<&Settings::flow, 6>},
    {.name = "L", .execute = Accept<3>},
    {.name = "M", .execute = Accept<3>},
    {.name = "&S", .execute = Accept<1>},
    {.name = "Z", .execute = Reset},
    {.name = "&F", .execute = Factory},
    {.name = "&W", .execute = Keep},
    {.name = "&V", .execute = View},
    {.name = "I", .execute = Page},
    {.name = "+FCLASS",
     .test = [](ModemState&, std::string_view) { return Info("0"); },
     .read = [](ModemState&, std::string_view) { return Info("0"); },
     .set = [](ModemState&,
               std::string_view parameters) { return parameters == "0" ? Done() : Refused(); }},
    {.name = "+IPR",
     .test = [](ModemState& state,
                std::string_view) { return Info("+IPR: (),(" + SpeedList(state) + ")"); },
     .read = [](ModemState& state,
                std::string_view) { return Info("+IPR: " + std::to_string(state.speed)); },
     .set = SetSpeed},
};

}  // namespace

std::span<const Command> BasicCommands() { return kCommands; }

Outcome RunRegister(ModemState& state, const Invocation& command) {
  const std::optional<int> number = ToNumber(std::string_view(command.name).substr(1));
  if (!number || *number >= kRegisters) return Refused();
  int& value = state.settings.registers[static_cast<size_t>(*number)];
  if (command.form == Form::kRead) {
    const std::string digits = std::to_string(value);
    return Info(std::string(3 - digits.size(), '0') + digits);
  }
  const std::optional<int> wanted = ToNumber(command.parameters);
  const int highest =
      *number == kEndOfLine || *number == kLineFeed || *number == kBackspace ? 127 : 255;
  if (command.form != Form::kSet || !wanted || *wanted < 0 || *wanted > highest) return Refused();
  value = *wanted;
  return Done();
}

}  // namespace kxsim
