#include <profile/ProfileKeysPrivate.h>
#include <profile/ProfileValuesPrivate.h>

#include <algorithm>

namespace kxsim {
namespace {

constexpr std::string_view kAnswerExpected =
    "an answer: a text, a table of text, result, raw, latency and gap, or a list of these";
constexpr int kLongestWaitMs = 600'000;

bool ReadMilliseconds(const toml::node& node, int& milliseconds) {
  return ReadNumberIn(node, 0, kLongestWaitMs, milliseconds);
}

bool ReadBytes(const toml::node& node, std::string& bytes) {
  std::string text;
  if (!ReadText(node, text)) return false;
  bytes = BytesOf(text);
  return true;
}

bool ReadRaw(const toml::node& node, Answer& answer) {
  answer.result.clear();
  const toml::array* pieces = node.as_array();
  if (pieces == nullptr) return ReadBytes(node, answer.raw.emplace_back());
  return std::all_of(pieces->begin(), pieces->end(), [&](const toml::node& piece) {
    return ReadBytes(piece, answer.raw.emplace_back());
  });
}

struct AnswerKey {
  std::string_view name;
  bool (*read)(const toml::node& node, Answer& answer);
};

constexpr AnswerKey kAnswerKeys[] = {
    {"text", [](const toml::node& node, Answer& answer) { return ReadBytes(node, answer.text); }},
    {"result",
     [](const toml::node& node, Answer& answer) { return ReadBytes(node, answer.result); }},
    {"raw", ReadRaw},
    {"latency", [](const toml::node& node,
                   Answer& answer) { return ReadMilliseconds(node, answer.latencyMs); }},
    {"gap",
     [](const toml::node& node, Answer& answer) { return ReadMilliseconds(node, answer.gapMs); }},
};

bool ReadAnswerTable(const toml::table& table, Answer& answer) {
  size_t known = 0;
  for (const AnswerKey& key : kAnswerKeys) {
    const toml::node* node = table.get(key.name);
    if (node == nullptr) continue;
    if (!key.read(*node, answer)) return false;
    ++known;
  }
  // A text without a result is the short form of both.
  if (table.contains("text") && !table.contains("result")) {
    const Answer brief = ParseAnswer(answer.text);
    answer.text = brief.text;
    answer.result = brief.result;
    answer.raw = brief.raw;
  }
  return known == table.size();
}

bool ReadAnswer(const toml::node& node, Answer& answer) {
  if (const toml::table* table = node.as_table()) return ReadAnswerTable(*table, answer);
  std::string text;
  if (!ReadBytes(node, text)) return false;
  answer = ParseAnswer(text);
  return true;
}

bool ReadAnswers(const toml::node& node, std::vector<Answer>& answers) {
  const toml::array* list = node.as_array();
  if (list == nullptr) return ReadAnswer(node, answers.emplace_back());
  return !list->empty() && std::all_of(list->begin(), list->end(), [&](const toml::node& item) {
    return ReadAnswer(item, answers.emplace_back());
  });
}

}  // namespace

bool ReadReplies(const toml::node& section, Profile& profile, ProfileError& error) {
  const toml::table* table = section.as_table();
  if (table == nullptr) {
    error = {section.source(), "expected a table of commands and answers"};
    return false;
  }
  for (const auto& [command, node] : *table) {
    Reply reply{std::string(command.str()), {}};
    if (!ReadAnswers(node, reply.answers)) {
      error = {node.source(),
               "\"" + reply.command + "\": expected " + std::string(kAnswerExpected)};
      return false;
    }
    profile.replies.push_back(std::move(reply));
  }
  return true;
}

}  // namespace kxsim
