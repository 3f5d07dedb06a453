#include <simulator/modem/Commands.h>

#include <string>
#include <vector>

namespace kxsim {
namespace {

constexpr int kUnknownSignal = 99;

Outcome Signal(ModemState& state, std::string_view) {
  const int level =
      state.functionality == 1 ? state.At(state.profile->radio.signal) : kUnknownSignal;
  return Info("+CSQ: " + std::to_string(level) + ",99");
}

Outcome Battery(ModemState& state, std::string_view) {
  const RadioSettings& radio = state.profile->radio;
  return Info("+CBC: " + std::to_string(radio.batteryStatus) + "," +
              std::to_string(state.At(radio.battery)));
}

Outcome SetFunctionality(ModemState& state, std::string_view parameters) {
  const std::vector<std::string> parts = SplitParameters(parameters);
  const std::optional<int> level = ToNumber(parts[0]);
  if (!level || (*level != 0 && *level != 1 && *level != 4)) return Refused(kIncorrectParameters);
  state.functionality = *level;
  return Done();
}

Outcome SetErrorReports(ModemState& state, std::string_view parameters) {
  const std::optional<int> mode = ToNumber(parameters);
  if (!mode || *mode < 0 || *mode > 2) return Refused();
  state.errorReports = *mode;
  return Done();
}

int Registration(const ModemState& state) {
  return state.functionality == 1 && state.Obstacle() == kNoError
             ? state.profile->radio.registration
             : 0;
}

Outcome TellRegistration(ModemState& state, std::string_view name, bool registered) {
  const std::string& mode = state.stored.try_emplace(std::string(name), "0").first->second;
  const int registration = registered ? Registration(state) : 0;
  const RadioSettings& radio = state.profile->radio;
  const bool placed = mode == "2" && (registration == 1 || registration == 5);
  return Info(std::string(name) + ": " + mode + "," + std::to_string(registration) +
              (placed ? ",\"" + radio.area + "\",\"" + radio.cell + "\"" : ""));
}

template <char mark>  // '+CREG' or, for the packet service, '+CGREG'
constexpr std::string_view kRegistrationName = mark == 'G' ? "+CGREG" : "+CREG";

template <char mark>
Outcome ReadRegistration(ModemState& state, std::string_view) {
  return TellRegistration(state, kRegistrationName<mark>, mark != 'G' || state.attached);
}

template <char mark>
Outcome SetRegistration(ModemState& state, std::string_view parameters) {
  const std::optional<int> mode = ToNumber(parameters);
  if (!mode || *mode < 0 || *mode > 2) return Refused(kIncorrectParameters);
  state.stored[std::string(kRegistrationName<mark>)] = std::to_string(*mode);
  return Done();
}

template <char mark>
Outcome TestRegistration(ModemState&, std::string_view) {
  return Info(std::string(kRegistrationName<mark>) + ": (0-2)");
}

Outcome ListOperators(ModemState& state, std::string_view) {
  if (state.Obstacle() != kNoError) return Refused(state.Obstacle());
  const RadioSettings& radio = state.profile->radio;
  return Info("+COPS: (2,\"" + radio.operatorName + "\",\"" + radio.operatorName + "\",\"" +
              radio.operatorCode + "\"),,(0-4),(0-2)");
}

Outcome TellOperator(ModemState& state, std::string_view) {
  if (!state.Registered()) return Info("+COPS: 0");
  const RadioSettings& radio = state.profile->radio;
  const std::string& name = state.operatorForm == 2 ? radio.operatorCode : radio.operatorName;
  return Info("+COPS: 0," + std::to_string(state.operatorForm) + ",\"" + name + "\"");
}

Outcome SetOperator(ModemState& state, std::string_view parameters) {
  if (state.Obstacle() != kNoError) return Refused(state.Obstacle());
  const std::vector<std::string> parts = SplitParameters(parameters);
  const std::optional<int> mode = ToNumber(parts[0]);
  if (!mode || *mode < 0 || *mode > 4) return Refused(kIncorrectParameters);
  if (parts.size() > 1) {
    const std::optional<int> form = ToNumber(parts[1]);
    if (!form || *form < 0 || *form > 2) return Refused(kIncorrectParameters);
    state.operatorForm = *form;
  }
  const RadioSettings& radio = state.profile->radio;
  const bool ours =
      parts.size() < 3 || parts[2] == radio.operatorName || parts[2] == radio.operatorCode;
  return ours ? Done() : Refused(kNoNetwork);
}

constexpr Command kCommands[] = {
    {.name = "+CSQ",
     .test = [](ModemState&, std::string_view) { return Info("+CSQ: (0-31,99),(0-7,99)"); },
     .execute = Signal},
    {.name = "+CBC",
     .test = [](ModemState&, std::string_view) { return Info("+CBC: (0-3),(0-100)"); },
     .execute = Battery},
    {.name = "+CFUN",
     .test = [](ModemState&, std::string_view) { return Info("+CFUN: (0,1,4),(0)"); },
     .read = [](ModemState& state,
                std::string_view) { return Info("+CFUN: " + std::to_string(state.functionality)); },
     .set = SetFunctionality},
    {.name = "+CMEE",
     .test = [](ModemState&, std::string_view) { return Info("+CMEE: (0-2)"); },
     .read = [](ModemState& state,
                std::string_view) { return Info("+CMEE: " + std::to_string(state.errorReports)); },
     .set = SetErrorReports},
    {.name = "+CREG",
     .test = TestRegistration<'R'>,
     .read = ReadRegistration<'R'>,
     .set = SetRegistration<'R'>},
    {.name = "+COPS", .test = ListOperators, .read = TellOperator, .set = SetOperator},
};

constexpr Command kPacketRegistration[] = {
    {.name = "+CGREG",
     .test = TestRegistration<'G'>,
     .read = ReadRegistration<'G'>,
     .set = SetRegistration<'G'>},
};

}  // namespace

std::span<const Command> NetworkCommands() { return kCommands; }

std::span<const Command> PacketRegistrationCommands() { return kPacketRegistration; }

std::span<const Command> CdmaReadings() {
  // Such devices give their readings to the read form as well.
  static constexpr Command kReadings[] = {
      {.name = "+CSQ",
       .test = [](ModemState&, std::string_view) { return Info("+CSQ: (0-31,99),(0-7,99)"); },
       .read = Signal,
       .execute = Signal},
      {.name = "+CBC", .read = Battery, .execute = Battery},
      {.name = "+CFUN",
       .read =
           [](ModemState& state, std::string_view) {
             return Info("+CFUN: " + std::to_string(state.functionality));
           },
       .set = SetFunctionality},
      {.name = "+CREG",
       .test = TestRegistration<'R'>,
       .read = ReadRegistration<'R'>,
       .set = SetRegistration<'R'>},
  };
  return kReadings;
}

}  // namespace kxsim
