#include <profile/ProfileKeysPrivate.h>
#include <profile/ProfileValuesPrivate.h>

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

std::string WrittenRaw(const Answer& answer) {
  if (answer.raw.size() == 1) return WrittenBytes(answer.raw[0]);
  std::string list;
  for (const std::string& piece : answer.raw)
    list += (list.empty() ? "" : ", ") + WrittenBytes(piece);
  return "[" + list + "]";
}

bool Same(const Answer& one, const Answer& other) {
  return one.text == other.text && one.result == other.result && one.raw == other.raw &&
         one.latencyMs == other.latencyMs && one.gapMs == other.gapMs;
}

std::string AnswerTable(const Answer& answer) {
  std::string list;
  if (!answer.raw.empty()) {
    list = "raw = " + WrittenRaw(answer);
  } else {
    list = "text = " + WrittenBytes(answer.text) + ", result = " + WrittenBytes(answer.result);
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
  return Same(ParseAnswer(brief), answer) ? WrittenBytes(brief) : AnswerTable(answer);
}

std::string WrittenAnswers(const std::vector<Answer>& answers) {
  if (answers.size() == 1) return WrittenAnswer(answers[0]);
  std::string list;
  for (const Answer& answer : answers) list += (list.empty() ? "" : ", ") + WrittenAnswer(answer);
  return "[" + list + "]";
}

std::string WrittenFault(const Fault& fault) {
  const Fault plain;
  std::string text = "\n[[faults]]\n" + Assignment("kind", Written(fault.kind));
  if (fault.at != plain.at) text += Assignment("at", Written(fault.at));
  if (fault.rate != plain.rate) text += Assignment("rate", std::to_string(fault.rate));
  if (fault.bytes != plain.bytes) text += Assignment("bytes", Written(fault.bytes));
  if (fault.ms != plain.ms) text += Assignment("ms", Written(fault.ms));
  if (!fault.text.empty()) text += Assignment("text", Written(fault.text));
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
