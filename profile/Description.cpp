#include <profile/Description.h>

namespace kxsim {
namespace {

std::string Row(const std::string& label, const std::string& text) {
  if (text.empty()) return "";
  return label + ":" + std::string(label.size() < 14 ? 14 - label.size() : 1, ' ') + text + "\n";
}

std::string SpeedText(const LineSettings& line) {
  std::string text = line.autobaud ? "answers at " : std::to_string(line.baud);
  if (line.autobaud && line.speeds.empty()) return text + "any speed";
  std::string list;
  for (const int speed : line.speeds) list += (list.empty() ? "" : ", ") + std::to_string(speed);
  if (list.empty()) return text;
  return text + (line.autobaud ? list : " (takes " + list + ")");
}

std::string Spoken(const Answer& answer) {
  if (!answer.raw.empty()) return "(raw bytes)";
  std::string text;
  for (const char byte : answer.text)
    text += byte == '\n' ? std::string(" / ") : std::string(1, byte);
  if (answer.result.empty()) return text.empty() ? "(silence)" : text;
  return text + (text.empty() ? "" : " / ") + answer.result;
}

std::string Listed(const std::vector<std::string>& items) {
  std::string list;
  for (const std::string& item : items) list += (list.empty() ? "" : ", ") + item;
  return list;
}

}  // namespace

std::string Described(const Profile& profile) {
  constexpr const char* kSimStates[] = {"none", "ready", "wants its PIN", "wants its PUK",
                                        "failed"};
  std::string text =
      profile.name + "\n" + Row("description", profile.description) +
      Row("manufacturer", profile.identity.manufacturer) + Row("model", profile.identity.model) +
      Row("revision", profile.identity.revision) +
      Row("capabilities", profile.identity.capabilities) + Row("speed", SpeedText(profile.line)) +
      Row("commands", profile.scripted ? "only those below" : Listed(profile.families));
  if (!profile.scripted) text += Row("SIM", kSimStates[static_cast<size_t>(profile.sim.state)]);
  for (const Reply& reply : profile.replies) {
    std::string answers;
    for (const Answer& answer : reply.answers) {
      answers += (answers.empty() ? "" : ", then ") + Spoken(answer);
    }
    text += "  " + reply.command + " -> " + answers + "\n";
  }
  for (const Fault& fault : profile.faults) text += Row("fault", fault.kind);
  return text;
}

}  // namespace kxsim
