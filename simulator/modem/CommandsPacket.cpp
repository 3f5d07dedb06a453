#include <simulator/modem/Commands.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kxsim {
namespace {

constexpr int kMostContexts = 16;
constexpr size_t kLongestAccessPoint = 100;

Outcome TellAttached(ModemState& state, const Command& command, std::string_view) {
  if (state.Obstacle() != kNoError) return Refused(state.Obstacle());
  return Told(command, state.attached ? "1" : "0");
}

Outcome Attach(ModemState& state, const Command&, std::string_view parameters) {
  if (parameters != "0" && parameters != "1") return Refused(kIncorrectParameters);
  if (state.Obstacle() != kNoError) return Refused(state.Obstacle());
  const PacketSettings& packet = state.profile->packet;
  const bool attach = parameters == "1";
  const bool waits = attach && !state.attached;
  Outcome outcome;
  if (attach && packet.refuseAttach) {
    outcome.error = kAttachFailed;
  } else {
    state.attached = attach;
  }
  if (waits) outcome.latencyMs = packet.attachSeconds * 1000;
  return outcome;
}

std::optional<int> ContextNumber(const std::string& text) {
  const std::optional<int> number = ToNumber(text);
  return number && *number >= 1 && *number <= kMostContexts ? number : std::nullopt;
}

Outcome ListContexts(ModemState& state, const Command&, std::string_view) {
  std::string list;
  for (const auto& [number, accessPoint] : state.contexts) {
    list += (list.empty() ? "" : "\n") + std::string("+CGDCONT: ") + std::to_string(number) +
            ",\"IP\",\"" + accessPoint + "\",\"\",0,0";
  }
  return Info(list);
}

// A number alone takes the context away.
Outcome DefineContext(ModemState& state, const Command&, std::string_view parameters) {
  const std::vector<std::string> parts = SplitParameters(parameters);
  const std::optional<int> number = ContextNumber(parts[0]);
  if (!number) return Refused(kIncorrectParameters);
  if (parts.size() == 1) {
    state.contexts.erase(*number);
    return Done();
  }
  if (parts[1] != "IP" && parts[1] != "PPP") return Refused(kIncorrectParameters);
  const std::string accessPoint = parts.size() > 2 ? parts[2] : "";
  if (accessPoint.size() > kLongestAccessPoint) return Refused(kIncorrectParameters);
  state.contexts[*number] = accessPoint;
  return Done();
}

bool Accepts(const ModemState& state, const Command& command) {
  const std::vector<std::string>& qos = state.profile->packet.qos;
  return std::find(qos.begin(), qos.end(), command.name) != qos.end();
}

Outcome TestQos(ModemState& state, const Command& command, std::string_view) {
  return Accepts(state, command) ? Told(command, command.range) : Refused(kNotSupported);
}

Outcome ReadQos(ModemState& state, const Command& command, std::string_view) {
  if (!Accepts(state, command)) return Refused(kNotSupported);
  const auto found = state.stored.find(command.name);
  return found == state.stored.end() ? Done() : Told(command, found->second);
}

Outcome SetQos(ModemState& state, const Command& command, std::string_view parameters) {
  if (!Accepts(state, command)) return Refused(kNotSupported);
  if (!ContextNumber(SplitParameters(parameters)[0])) return Refused(kIncorrectParameters);
  state.stored[std::string(command.name)] = parameters;
  return Done();
}

constexpr std::string_view kShortRanges = "\"IP\",(0-3),(0-4),(0-5),(0-9),(0-18,31)";
constexpr std::string_view kLongRanges =
    "\"IP\",(0-4),(0-384),(0-384),(0-384),(0-384),(0-2),"
    "(0-1520),(\"0E0\",\"1E1\"),(\"0E0\",\"1E1\"),(0-3),"
    "(0,100-4000),(0-3)";

constexpr Command Qos(std::string_view name, std::string_view range) {
  return {.name = name, .read = ReadQos, .set = SetQos, .test = TestQos, .range = range};
}

constexpr Command kCommands[] = {
    {.name = "+CGATT", .read = TellAttached, .set = Attach, .test = ListRange, .range = "(0,1)"},
    {.name = "+CGDCONT",
     .read = ListContexts,
     .set = DefineContext,
     .test = ListRange,
     .range = "(1-16),\"IP\",,,(0-2),(0-4)"},
    Qos("+CGQMIN", kShortRanges),
    Qos("+CGQREQ", kShortRanges),
    Qos("+CGEQMIN", kLongRanges),
    Qos("+CGEQREQ", kLongRanges),
};

}  // namespace

std::span<const Command> PacketCommands() { return kCommands; }

}  // namespace kxsim
