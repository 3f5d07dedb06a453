#include <simulator/modem/Commands.h>

#include <string>

namespace kxsim {
namespace {

std::string Connected(const ModemState& state) {
  const bool plain = state.settings[kConnectTexts] == 0 || state.speed == 0;
  return plain ? "CONNECT" : "CONNECT " + std::to_string(state.speed);
}

Outcome HangUp(ModemState& state, const Command& command, std::string_view parameters) {
  if (!parameters.empty() && !NumberUpTo(command.highest, parameters)) return Refused();
  state.call->End();
  return Done();
}

Outcome Resume(ModemState& state, const Command&, std::string_view) {
  if (!state.call->IsUp()) return {.result = "NO CARRIER"};
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

Outcome DialNetwork(const ModemState& state) {
  if (!state.Registered()) return {.result = "NO CARRIER"};
  return {.result = Connected(state), .call = CallAction::kConnect, .abortable = true};
}

Outcome DialPacket(const ModemState& state, std::string_view number) {
  const std::optional<int> context = DialedContext(number);
  if (!context || (*context != 0 && !state.contexts.contains(*context))) return Refused();
  return state.attached ? DialNetwork(state) : Outcome{.result = "NO CARRIER"};
}

Outcome Dial(ModemState& state, const Command&, std::string_view number) {
  if (state.call->IsUp()) return Refused();
  if (state.Obstacle() != kNoError) return Refused(state.Obstacle());
  if (number.starts_with('T') || number.starts_with('P')) number.remove_prefix(1);
  if (number.starts_with(kPacketDial) && state.Has("gprs")) return DialPacket(state, number);
  if (number == "#777" && (state.Has("cdma") || state.Has("qualcomm"))) return DialNetwork(state);
  // There is nobody to talk to.
  return {.result = "NO CARRIER", .abortable = true};
}

constexpr Command kCommands[] = {
    {.name = "H", .execute = HangUp, .highest = 1},
    {.name = "O", .execute = Resume},
    {.name = "D", .execute = Dial},
};

}  // namespace

std::span<const Command> CallCommands() { return kCommands; }

}  // namespace kxsim
