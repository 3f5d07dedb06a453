#include <profile/Faults.h>
#include <profile/ProfileKeys.h>
#include <profile/ProfileValues.h>
#include <profile/Text.h>

#include <algorithm>
#include <iterator>
#include <set>

namespace kxsim {
namespace {

bool ReadMilliseconds(const TomlNode& node, int& milliseconds) {
  return ReadNumberIn(node, 0, 600'000, milliseconds);
}

bool ReadRaw(const TomlNode& node, Answer& answer) {
  answer.result.clear();
  return ReadText(node, answer.raw.emplace_back()) || ReadTexts(node, answer.raw = {});
}

struct AnswerKey {
  std::string_view name;
  bool (*read)(const TomlNode& node, Answer& answer);
};

constexpr AnswerKey kAnswerKeys[] = {
    {"text", [](const TomlNode& node, Answer& answer) { return ReadText(node, answer.text); }},
    {"result", [](const TomlNode& node, Answer& answer) { return ReadText(node, answer.result); }},
    {"raw", ReadRaw},
    {"latency",
     [](const TomlNode& node, Answer& answer) { return ReadMilliseconds(node, answer.latencyMs); }},
    {"gap",
     [](const TomlNode& node, Answer& answer) { return ReadMilliseconds(node, answer.gapMs); }},
};

const TomlNode* Find(const TomlTable& table, std::string_view name) {
  const auto found = std::find_if(table.begin(), table.end(),
                                  [=](const TomlItem& item) { return item.name == name; });
  return found == table.end() ? nullptr : &found->node;
}

bool ReadAnswerTable(const TomlTable& table, Answer& answer) {
  size_t known = 0;
  for (const AnswerKey& key : kAnswerKeys) {
    const TomlNode* node = Find(table, key.name);
    if (node == nullptr) continue;
    if (!key.read(*node, answer)) return false;
    ++known;
  }
  // A text without a result is the short form of both.
  if (Find(table, "text") != nullptr && Find(table, "result") == nullptr) {
    const Answer brief = ParseAnswer(answer.text);
    answer.text = brief.text;
    answer.result = brief.result;
    answer.raw = brief.raw;
  }
  return known == table.size();
}

bool ReadAnswer(const TomlNode& node, Answer& answer) {
  if (const auto* table = ValueOf<TomlTable>(node)) return ReadAnswerTable(*table, answer);
  std::string text;
  if (!ReadText(node, text)) return false;
  answer = ParseAnswer(text);
  return true;
}

bool ReadAnswers(const TomlNode& node, std::vector<Answer>& answers) {
  if (ValueOf<TomlList>(node) == nullptr) return ReadAnswer(node, answers.emplace_back());
  return ReadList<ReadAnswer>(node, answers) && !answers.empty();
}

FaultValue FaultValueOf(const TomlNode& node) {
  FaultValue value;
  if (const auto* whole = ValueOf<int64_t>(node)) value.number = static_cast<double>(*whole);
  if (const auto* number = ValueOf<double>(node)) value.number = *number;
  if (const auto* text = ValueOf<std::string>(node)) value.text = *text;
  return value;
}

const ProfileKey* FindKey(std::string_view section, std::string_view name) {
  const std::span<const ProfileKey> keys = ProfileKeys();
  const auto found = std::find_if(keys.begin(), keys.end(), [&](const ProfileKey& key) {
    return key.section == section && key.name == name;
  });
  return found == keys.end() ? nullptr : &*found;
}

std::string NamesIn(std::string_view section) {
  std::vector<std::string> names;
  for (const ProfileKey& key : ProfileKeys()) {
    if (key.section == section) names.emplace_back(key.name);
  }
  return Joined(names);
}

std::string SectionNames() {
  std::set<std::string> names = {"replies", "faults"};
  for (const ProfileKey& key : ProfileKeys()) names.emplace(key.section);
  names.erase("");
  return Joined({names.begin(), names.end()});
}

// Reads the parts of one file into one profile.
class Reader {
 public:
  Reader(const std::string& fileName, Profile& profile) : fileName_(fileName), profile_(profile) {}

  Result ReadItem(const TomlItem& item) {
    if (item.name == "replies") return ReadReplies(item.node);
    if (item.name == "faults") return ReadFaults(item.node);
    return FindKey("", item.name) != nullptr ? ReadKey("", item) : ReadSection(item);
  }

 private:
  Failure At(const TomlNode& node, const std::string& sentence) const {
    return FailureAt(fileName_, node.line, sentence);
  }

  Result ReadKey(std::string_view section, const TomlItem& item) {
    const ProfileKey* key = FindKey(section, item.name);
    if (key == nullptr) {
      return At(item.node,
                "unknown key " + Quoted(item.name) + "; expected one of " + NamesIn(section));
    }
    if (key->read(item.node, profile_)) return {};
    return At(item.node, Quoted(item.name) + ": expected " + std::string(key->expected));
  }

  Result ReadSection(const TomlItem& section) {
    const auto* table = ValueOf<TomlTable>(section.node);
    if (table == nullptr || NamesIn(section.name).empty()) {
      return At(section.node, "unknown key " + Quoted(section.name) + "; expected one of " +
                                  NamesIn("") + ", or a section of " + SectionNames());
    }
    for (const TomlItem& item : *table) {
      if (Result failure = ReadKey(section.name, item)) return failure;
    }
    return {};
  }

  Result ReadReplies(const TomlNode& section) {
    const auto* table = ValueOf<TomlTable>(section);
    if (table == nullptr) return At(section, "expected a table of commands and answers");
    for (const auto& [command, node] : *table) {
      Reply& reply = profile_.replies.emplace_back(Reply{command, {}});
      if (ReadAnswers(node, reply.answers)) continue;
      return At(node, Quoted(command) +
                          ": expected an answer: a text, a table of text, result, raw, latency "
                          "and gap, or a list of these");
    }
    return {};
  }

  Result ReadFaults(const TomlNode& section) {
    const auto* list = ValueOf<TomlList>(section);
    if (list == nullptr) return At(section, "\"faults\": expected sections [[faults]]");
    for (const TomlNode& item : *list) {
      const auto* table = ValueOf<TomlTable>(item);
      if (table == nullptr) return At(item, "\"faults\": expected sections [[faults]]");
      if (Result failure = ReadFault(*table, item)) return failure;
    }
    return {};
  }

  Result ReadFault(const TomlTable& table, const TomlNode& section) {
    Fault& fault = profile_.faults.emplace_back();
    const TomlNode* kind = Find(table, "kind");
    if (kind == nullptr) return At(section, "a fault without \"kind\"");
    const auto* name = ValueOf<std::string>(*kind);
    if (name == nullptr) return At(*kind, "\"kind\": expected a text");
    if (const Result failure = StartFault(*name, fault)) return At(*kind, failure->sentence);
    for (const TomlItem& item : table) {
      if (&item.node == kind) continue;
      const Result failure = SetFaultParameter(item.name, FaultValueOf(item.node), fault);
      if (failure) return At(item.node, failure->sentence);
    }
    if (const Result failure = CheckFault(fault)) return At(section, failure->sentence);
    return {};
  }

  const std::string& fileName_;
  Profile& profile_;
};

bool Gives(const TomlTable& table, std::string_view section, std::string_view key) {
  const TomlNode* node = Find(table, section);
  const auto* keys = node == nullptr ? nullptr : ValueOf<TomlTable>(*node);
  return keys != nullptr && Find(*keys, key) != nullptr;
}

}  // namespace

Result ParseProfile(std::string_view toml, const std::string& fileName, Profile& profile) {
  TomlTable table;
  if (Result failure = ParseToml(toml, fileName, table)) return failure;
  profile = Profile();
  const size_t folder = fileName.rfind('/') + 1;
  profile.name = fileName.substr(folder, fileName.rfind(".toml") - folder);
  Reader reader(fileName, profile);
  for (const TomlItem& item : table) {
    if (Result failure = reader.ReadItem(item)) return failure;
  }
  // A device that is all script echoes only when it is said to.
  if (profile.scripted && !Gives(table, "line", "echo")) profile.line.echo = false;
  return {};
}

}  // namespace kxsim
