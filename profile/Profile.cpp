#include <profile/Profile.h>

#include <algorithm>
#include <array>

namespace kxsim {
namespace {

constexpr std::array<std::string_view, 8> kFinalResults = {
    "OK",   "ERROR",     "NO CARRIER", "NO DIALTONE",
    "BUSY", "NO ANSWER", "CONNECT",    "COMMAND NOT SUPPORT"};
constexpr std::array<std::string_view, 4> kErrorReports = {
    "+CME ERROR:", "+CMS ERROR:", "CME ERROR:", "CMS ERROR:"};
constexpr std::string_view kSilence = "(silence)";
constexpr std::string_view kRaw = "(raw)";

bool IsFinalResult(std::string_view line) {
  return std::find(kFinalResults.begin(), kFinalResults.end(), line) != kFinalResults.end() ||
         std::any_of(kErrorReports.begin(), kErrorReports.end(),
                     [=](std::string_view report) { return line.starts_with(report); });
}

}  // namespace

Answer ParseAnswer(std::string_view text) {
  Answer answer;
  if (text == kSilence) {
    answer.result.clear();
    return answer;
  }
  if (text.starts_with(kRaw)) {
    answer.result.clear();
    answer.raw.emplace_back(text.substr(kRaw.size()));
    return answer;
  }
  const size_t lastLine = text.rfind('\n') + 1;  // 0 when there is one line only
  if (IsFinalResult(text.substr(lastLine))) {
    answer.result = text.substr(lastLine);
    text = text.substr(0, lastLine == 0 ? 0 : lastLine - 1);
  }
  answer.text = text;
  return answer;
}

void AddReply(Profile& profile, const std::string& command, Answer answer) {
  const auto found = std::find_if(profile.replies.begin(), profile.replies.end(),
                                  [&](const Reply& reply) { return reply.command == command; });
  if (found != profile.replies.end()) {
    found->answers.push_back(std::move(answer));
  } else {
    profile.replies.push_back({command, {std::move(answer)}});
  }
}

Profile ScriptedProfile(const std::vector<std::pair<std::string, std::string>>& rows) {
  Profile profile;
  profile.name = "scripted";
  profile.scripted = true;
  profile.line.echo = false;
  profile.line.autobaud = true;
  for (const auto& [command, answer] : rows) AddReply(profile, command, ParseAnswer(answer));
  return profile;
}

}  // namespace kxsim
