#include <profile/Faults.h>
#include <profile/ProfileKeys.h>
#include <profile/ProfileValues.h>

namespace kxsim {
namespace {

std::string Assignment(std::string_view name, const std::string& value) {
  return std::string(name) + " = " + value + "\n";
}

// The keys of the sections, as far as they differ from a plain device.
std::string WrittenKeys(const Profile& profile) {
  Profile plain;
  if (profile.scripted) plain.line.echo = false;
  std::string text;
  std::string_view section;
  for (const ProfileKey& key : ProfileKeys()) {
    const std::string value = key.write(profile);
    if (value == key.write(plain)) continue;
    if (key.section != section) text += "\n[" + std::string(key.section) + "]\n";
    section = key.section;
    text += Assignment(key.name, value);
  }
  return text;
}

std::string AnswerTable(const Answer& answer) {
  std::string list;
  if (!answer.raw.empty()) {
    list = "raw = " + (answer.raw.size() == 1 ? Written(answer.raw[0]) : Written(answer.raw));
  } else {
    list = "text = " + Written(answer.text) + ", result = " + Written(answer.result);
  }
  if (answer.latencyMs != 0) list += ", latency = " + Written(answer.latencyMs);
  if (answer.gapMs != 0) list += ", gap = " + Written(answer.gapMs);
  return "{ " + list + " }";
}

// The short form where it says the same.
std::string WrittenAnswer(const Answer& answer) {
  std::string brief = answer.text;
  if (answer.result.empty() && answer.text.empty() && answer.raw.empty()) brief = "(silence)";
  if (answer.text.empty() && !answer.result.empty()) brief = answer.result;
  if (!answer.text.empty() && answer.result != "OK") brief += "\n" + answer.result;
  return ParseAnswer(brief) == answer ? Written(brief) : AnswerTable(answer);
}

std::string WrittenAnswers(const std::vector<Answer>& answers) {
  if (answers.size() == 1) return WrittenAnswer(answers[0]);
  return "[" + WrittenList(answers, WrittenAnswer) + "]";
}

std::string WrittenParameter(const FaultParameter& parameter, const Fault& fault) {
  if (parameter.number != nullptr) return Written(fault.*parameter.number);
  if (parameter.chance != nullptr) return Written(fault.*parameter.chance);
  return Written(fault.*parameter.text);
}

std::string WrittenFault(const Fault& fault) {
  const Fault plain;
  std::string text = "\n[[faults]]\n" + Assignment("kind", Written(fault.kind));
  for (const FaultParameter& parameter : FaultParameters()) {
    const std::string value = WrittenParameter(parameter, fault);
    if (value != WrittenParameter(parameter, plain)) text += Assignment(parameter.name, value);
  }
  return text;
}

}  // namespace

std::string FormatProfile(const Profile& profile) {
  std::string text = WrittenKeys(profile);
  if (!profile.replies.empty()) text += "\n[replies]\n";
  for (const Reply& reply : profile.replies) {
    text += Assignment(Written(reply.command), WrittenAnswers(reply.answers));
  }
  for (const Fault& fault : profile.faults) text += WrittenFault(fault);
  return text;
}

}  // namespace kxsim
