#include <simulator/modem/Commands.h>

#include <string>
#include <vector>

namespace kxsim {
namespace {

constexpr int kUnknownSignal = 99;

Outcome Signal(ModemState& state, const Command& command, std::string_view) {
  const int level =
      state.functionality == 1 ? state.At(state.profile->radio.signal) : kUnknownSignal;
  return Told(command, std::to_string(level) + ",99");
}

Outcome Battery(ModemState& state, const Command& command, std::string_view) {
  const RadioSettings& radio = state.profile->radio;
  return Told(command,
              std::to_string(radio.batteryStatus) + "," + std::to_string(state.At(radio.battery)));
}

Outcome TellFunctionality(ModemState& state, const Command& command, std::string_view) {
  return Told(command, std::to_string(state.functionality));
}

Outcome SetFunctionality(ModemState& state, const Command&, std::string_view parameters) {
  const std::optional<int> level = ToNumber(SplitParameters(parameters)[0]);
  if (!level || (*level != 0 && *level != 1 && *level != 4)) return Refused(kIncorrectParameters);
  state.functionality = *level;
  return Done();
}

Outcome TellErrorReports(ModemState& state, const Command& command, std::string_view) {
  return Told(command, std::to_string(state.errorReports));
}

Outcome SetErrorReports(ModemState& state, const Command&, std::string_view parameters) {
  const std::optional<int> mode = NumberUpTo(2, parameters);
  if (!mode) return Refused();
  state.errorReports = *mode;
  return Done();
}

// 0 when the device is not registered.
Outcome ToldRegistration(const ModemState& state, const Command& command, int registration) {
  const auto found = state.stored.find(command.name);
  const std::string mode = found == state.stored.end() ? "0" : found->second;
  const RadioSettings& radio = state.profile->radio;
  const bool placed = mode == "2" && (registration == kHomeNetwork || registration == kRoaming);
  return Told(command, mode + "," + std::to_string(registration) +
                           (placed ? ",\"" + radio.area + "\",\"" + radio.cell + "\"" : ""));
}

Outcome TellRegistration(ModemState& state, const Command& command, std::string_view) {
  return ToldRegistration(state, command, state.Registration());
}

Outcome TellPacketRegistration(ModemState& state, const Command& command, std::string_view) {
  return ToldRegistration(state, command, state.attached ? state.Registration() : 0);
}

Outcome SetRegistration(ModemState& state, const Command& command, std::string_view parameters) {
  const std::optional<int> mode = NumberUpTo(2, parameters);
  if (!mode) return Refused(kIncorrectParameters);
  state.stored[std::string(command.name)] = std::to_string(*mode);
  return Done();
}

Outcome ListOperators(ModemState& state, const Command& command, std::string_view) {
  if (state.Obstacle() != kNoError) return Refused(state.Obstacle());
  const RadioSettings& radio = state.profile->radio;
  return Told(command, "(2,\"" + radio.operatorName + "\",\"" + radio.operatorName + "\",\"" +
                           radio.operatorCode + "\"),,(0-4),(0-2)");
}

Outcome TellOperator(ModemState& state, const Command& command, std::string_view) {
  if (!state.Registered()) return Told(command, "0");
  const RadioSettings& radio = state.profile->radio;
  const std::string& name = state.operatorForm == 2 ? radio.operatorCode : radio.operatorName;
  return Told(command, "0," + std::to_string(state.operatorForm) + ",\"" + name + "\"");
}

Outcome SetOperator(ModemState& state, const Command&, std::string_view parameters) {
  if (state.Obstacle() != kNoError) return Refused(state.Obstacle());
  const std::vector<std::string> parts = SplitParameters(parameters);
  if (!NumberUpTo(4, parts[0])) return Refused(kIncorrectParameters);
  if (parts.size() > 1) {
    const std::optional<int> form = NumberUpTo(2, parts[1]);
    if (!form) return Refused(kIncorrectParameters);
    state.operatorForm = *form;
  }
  const RadioSettings& radio = state.profile->radio;
  const bool ours =
      parts.size() < 3 || parts[2] == radio.operatorName || parts[2] == radio.operatorCode;
  return ours ? Done() : Refused(kNoNetwork);
}

constexpr std::string_view kSignalRange = "(0-31,99),(0-7,99)";
constexpr std::string_view kReportRange = "(0-2)";

constexpr Command kCommands[] = {
    {.name = "+CSQ", .execute = Signal, .test = ListRange, .range = kSignalRange},
    {.name = "+CBC", .execute = Battery, .test = ListRange, .range = "(0-3),(0-100)"},
    {.name = "+CFUN",
     .read = TellFunctionality,
     .set = SetFunctionality,
     .test = ListRange,
     .range = "(0,1,4),(0)"},
    {.name = "+CMEE",
     .read = TellErrorReports,
     .set = SetErrorReports,
     .test = ListRange,
     .range = kReportRange},
    {.name = "+CREG",
     .read = TellRegistration,
     .set = SetRegistration,
     .test = ListRange,
     .range = kReportRange},
    {.name = "+COPS", .read = TellOperator, .set = SetOperator, .test = ListOperators},
};

constexpr Command kPacketRegistration[] = {
    {.name = "+CGREG",
     .read = TellPacketRegistration,
     .set = SetRegistration,
     .test = ListRange,
     .range = kReportRange},
};

// Such devices give their readings to the read form as well.
constexpr Command kCdmaReadings[] = {
    {.name = "+CSQ", .execute = Signal, .read = Signal, .test = ListRange, .range = kSignalRange},
    {.name = "+CBC", .execute = Battery, .read = Battery},
    {.name = "+CFUN", .read = TellFunctionality, .set = SetFunctionality},
    {.name = "+CREG",
     .read = TellRegistration,
     .set = SetRegistration,
     .test = ListRange,
     .range = kReportRange},
};

}  // namespace

std::span<const Command> NetworkCommands() { return kCommands; }

std::span<const Command> PacketRegistrationCommands() { return kPacketRegistration; }

std::span<const Command> CdmaReadings() { return kCdmaReadings; }

}  // namespace kxsim
