#include <profile/Description.h>

#include <profile/Text.h>

namespace kxsim {
namespace {

std::string Row(const std::string& label, const std::string& text) {
  if (text.empty()) return "";
  return label + ":" + std::string(label.size() < 14 ? 14 - label.size() : 1, ' ') +
         Printable(text) + "\n";
}

std::string SpeedText(const LineSettings& line) {
  std::string text = line.autobaud ? "answers at " : std::to_string(line.baud);
  if (line.autobaud && line.speeds.empty()) return text + "any speed";
  std::vector<std::string> speeds;
  for (const int speed : line.speeds) speeds.push_back(std::to_string(speed));
  const std::string list = Joined(speeds);
  if (list.empty()) return text;
  return text + (line.autobaud ? list : " (takes " + list + ")");
}

// The lines of a text stand behind one another.
std::string Spoken(const Answer& answer) {
  if (!answer.raw.empty()) return "(raw bytes)";
  if (answer.text.empty()) return answer.result.empty() ? "(silence)" : Printable(answer.result);
  std::string text = answer.text + (answer.result.empty() ? "" : "\n" + answer.result);
  std::string spoken;
  for (const char byte : text) spoken += byte == '\n' ? " / " : Printable({&byte, 1});
  return spoken;
}

}  // namespace

std::string Described(const Profile& profile) {
  constexpr const char* kSimStates[] = {"none", "ready", "wants its PIN", "wants its PUK",
                                        "failed"};
  std::string text =
      Printable(profile.name) + "\n" + Row("description", profile.description) +
      Row("manufacturer", profile.identity.manufacturer) + Row("model", profile.identity.model) +
      Row("revision", profile.identity.revision) +
      Row("capabilities", profile.identity.capabilities) + Row("speed", SpeedText(profile.line)) +
      Row("commands", profile.scripted ? "only those below" : Joined(profile.families));
  if (!profile.scripted) text += Row("SIM", kSimStates[static_cast<size_t>(profile.sim.state)]);
  for (const Reply& reply : profile.replies) {
    std::vector<std::string> answers;
    for (const Answer& answer : reply.answers) answers.push_back(Spoken(answer));
    text += "  " + Printable(reply.command) + " -> " + Joined(answers, ", then ") + "\n";
  }
  for (const Fault& fault : profile.faults) text += Row("fault", fault.kind);
  return text;
}

}  // namespace kxsim
