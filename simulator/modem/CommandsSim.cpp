#include <simulator/modem/Commands.h>

#include <string>
#include <vector>

namespace kxsim {
namespace {

constexpr std::string_view kSimLock = "SC";

Outcome PinState(ModemState& state, const Command& command, std::string_view) {
  switch (state.card.State()) {
    case SimState::kReady:
      return Told(command, "READY");
    case SimState::kPin:
      return state.profile->sim.stateAsError ? Refused(kSimPinRequired) : Told(command, "SIM PIN");
    case SimState::kPuk:
      return state.profile->sim.stateAsError ? Refused(kSimPukRequired) : Told(command, "SIM PUK");
    default:
      return Refused(state.card.Obstacle());
  }
}

Outcome EnterPin(ModemState& state, const Command&, std::string_view parameters) {
  const std::vector<std::string> codes = SplitParameters(parameters);
  if (codes.size() > 2) return Refused(kIncorrectParameters);
  return Concluded(codes.size() == 1 ? state.card.EnterPin(codes[0])
                                     : state.card.Unblock(codes[0], codes[1]));
}

// Mode 0 unlocks, 1 locks, 2 asks.
Outcome Lock(ModemState& state, const Command& command, std::string_view parameters) {
  const std::vector<std::string> parts = SplitParameters(parameters);
  if (parts.size() < 2 || parts[0] != kSimLock) return Refused(kNotAllowed);
  if (state.card.State() != SimState::kReady) return Refused(state.card.Obstacle());
  if (parts[1] == "2") return Told(command, state.card.Locked() ? "1" : "0");
  if ((parts[1] != "0" && parts[1] != "1") || parts.size() < 3) {
    return Refused(kIncorrectParameters);
  }
  return Concluded(state.card.SetLock(parts[1] == "1", parts[2]));
}

Outcome PasswordLengths(ModemState& state, const Command& command, std::string_view) {
  const std::string length = std::to_string(state.profile->sim.pinLength);
  return Told(command, "(\"SC\"," + length + "),(\"P2\"," + length + ")");
}

Outcome ChangePassword(ModemState& state, const Command&, std::string_view parameters) {
  const std::vector<std::string> parts = SplitParameters(parameters);
  if (parts.size() != 3 || parts[0] != kSimLock) return Refused(kIncorrectParameters);
  return Concluded(state.card.ChangePin(parts[1], parts[2]));
}

constexpr Command kCommands[] = {
    {.name = "+CPIN", .read = PinState, .set = EnterPin, .test = Known},
    {.name = "+CLCK", .set = Lock, .test = ListRange, .range = "(\"SC\")"},
    {.name = "+CPWD", .set = ChangePassword, .test = PasswordLengths},
};

}  // namespace

std::span<const Command> SimCommands() { return kCommands; }

}  // namespace kxsim
