#include <simulator/modem/Commands.h>

#include <string>

namespace kxsim {
namespace {

std::string Connected(const ModemState& state) {
  const bool plain = state.settings.connectTexts == 0 || state.speed == 0;
  return plain ? "CONNECT" : "CONNECT " + std::to_string(state.speed);
}

Outcome HangUp(ModemState& state, std::string_view parameters) {
  if (ToNumber(parameters).value_or(0) > 1) return Refused();
  state.online = false;
  return {.call = CallAction::kEnd};
}

Outcome Resume(ModemState& state, std::string_view) {
  if (!state.online) return {.result = "NO CARRIER"};
  return {.result = Connected(state), .call = CallAction::kResume};
}

constexpr std::string_view kPacketDial = "*99";

// The context behind "*99***n#"; 0 for "*99#", which leaves the choice to the network.
std::optional<int> DialedContext(std::string_view number) {
  if (number == "*99#") return 0;
  const size_t stars = number.rfind('*');
  if (!number.ends_with('#') || stars == 0) return std::nullopt;
  return ToNumber(number.substr(stars + 1, number.size() - stars - 2));
}

Outcome DialPacket(ModemState& state, std::string_view number) {
  const std::optional<int> context = DialedContext(number);
  if (!context) return Refused();
  if (*context != 0 && !state.contexts.contains(*context)) return Refused();
  if (!state.attached || !state.Registered()) return {.result = "NO CARRIER"};
  return {.result = Connected(state), .call = CallAction::kConnect, .abortable = true};
}

Outcome Dial(ModemState& state, std::string_view parameters) {
  if (state.online) return Refused();
  if (!parameters.empty() && (parameters.front() == 'T' || parameters.front() == 'P')) {
    parameters.remove_prefix(1);
  }
  if (state.Obstacle() != kNoError) return Refused(state.Obstacle());
  if (parameters.starts_with(kPacketDial) && state.Has("gprs")) {
    return DialPacket(state, parameters);
  }
  if (parameters == "#777" && (state.Has("cdma") || state.Has("qualcomm"))) {
    if (!state.Registered()) return {.result = "NO CARRIER"};
    return {.result = Connected(state), .call = CallAction::kConnect, .abortable = true};
  }
  // There is nobody to talk to.
  return {.result = "NO CARRIER", .abortable = true};
}

constexpr Command kCommands[] = {
    {.name = "H", .execute = HangUp},
    {.name = "O", .execute = Resume},
    {.name = "D", .execute = Dial},
};

}  // namespace

std::span<const Command> CallCommands() { return kCommands; }

}  // namespace kxsim
