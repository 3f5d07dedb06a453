#include <profile/ProfileValues.h>

#include <profile/CommandLine.h>
#include <profile/Text.h>
#include <profile/UsualSpeed.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <iterator>
#include <string_view>

namespace kxsim {
namespace {

constexpr std::array<std::string_view, 5> kSimStates = {"none", "ready", "pin", "puk", "failure"};
constexpr std::array<std::string_view, 4> kFamilies = {"gsm", "gprs", "cdma", "qualcomm"};
constexpr int kLastSecond = 1'000'000;

template <typename Value>
bool ReadExactly(const TomlNode& node, Value& value) {
  const auto* given = ValueOf<Value>(node);
  if (given != nullptr) value = *given;
  return given != nullptr;
}

// What has a short form of its own, and what would end the text.
struct ShortEscape {
  char byte;
  const char* text;
};

constexpr ShortEscape kShortEscapes[] = {
    {'\r', "\\r"}, {'\n', "\\n"}, {'\t', "\\t"}, {'"', "\\\""}, {'\\', "\\\\"}};

std::string WrittenByte(char byte) {
  for (const ShortEscape& escape : kShortEscapes) {
    if (escape.byte == byte) return escape.text;
  }
  if (byte >= ' ' && byte <= '~') return std::string(1, byte);
  char text[7];
  snprintf(text, sizeof text, "\\u%04X", static_cast<unsigned char>(byte));
  return text;
}

}  // namespace

bool ReadNumberIn(const TomlNode& node, int low, int high, int& number) {
  int64_t value = 0;
  if (!ReadExactly(node, value) || value < low || value > high) return false;
  number = static_cast<int>(value);
  return true;
}

bool ReadFlag(const TomlNode& node, bool& flag) { return ReadExactly(node, flag); }

bool ReadText(const TomlNode& node, std::string& text) { return ReadExactly(node, text); }

bool ReadTexts(const TomlNode& node, std::vector<std::string>& texts) {
  return ReadList<ReadText>(node, texts);
}

bool ReadSpeed(const TomlNode& node, int& speed) {
  return ReadNumberIn(node, 1, 1'000'000, speed) && IsUsualSpeed(speed);
}

bool ReadSpeeds(const TomlNode& node, std::vector<int>& speeds) {
  return ReadList<ReadSpeed>(node, speeds);
}

bool ReadCode(const TomlNode& node, std::string& digits) {
  return ReadText(node, digits) && digits.size() >= 4 &&
         std::all_of(digits.begin(), digits.end(), IsDigit);
}

bool ReadSimState(const TomlNode& node, SimState& state) {
  std::string name;
  if (!ReadText(node, name)) return false;
  const auto found = std::find(kSimStates.begin(), kSimStates.end(), name);
  if (found == kSimStates.end()) return false;
  state = static_cast<SimState>(found - kSimStates.begin());
  return true;
}

bool ReadFamilies(const TomlNode& node, std::vector<std::string>& families) {
  return ReadTexts(node, families) &&
         std::all_of(families.begin(), families.end(), [](const std::string& name) {
           return std::find(kFamilies.begin(), kFamilies.end(), name) != kFamilies.end();
         });
}

bool ReadStepsIn(const TomlNode& node, int low, int high, std::vector<Step>& steps) {
  if (ReadNumberIn(node, low, high, steps.emplace_back().value)) return true;
  steps.clear();
  const auto* list = ValueOf<TomlList>(node);
  if (list == nullptr || list->empty()) return false;
  for (const TomlNode& item : *list) {
    const auto* pair = ValueOf<TomlList>(item);
    const int earliest = steps.empty() ? 0 : steps.back().second;
    Step step;
    if (pair == nullptr || pair->size() != 2 ||
        !ReadNumberIn(pair->front(), earliest, kLastSecond, step.second) ||
        !ReadNumberIn(pair->back(), low, high, step.value)) {
      return false;
    }
    steps.push_back(step);
  }
  return true;
}

bool ReadTextsAt(const TomlNode& node, int low, int high,
                 std::vector<std::pair<int, std::string>>& texts) {
  const auto* table = ValueOf<TomlTable>(node);
  if (table == nullptr) return false;
  for (const TomlItem& item : *table) {
    const std::optional<int> number = ToNumber(item.name);
    std::string text;
    if (!number || *number < low || *number > high || !ReadText(item.node, text)) return false;
    texts.emplace_back(*number, std::move(text));
  }
  std::sort(texts.begin(), texts.end());
  return true;
}

std::string Written(int number) { return std::to_string(number); }

std::string Written(bool flag) { return flag ? "true" : "false"; }

std::string Written(double number) {
  char text[32];
  return {text, std::to_chars(text, std::end(text), number).ptr};
}

std::string Written(const std::string& text) {
  std::string written = "\"";
  for (const char byte : text) written += WrittenByte(byte);
  return written + '"';
}

std::string Written(const std::vector<int>& numbers) {
  return "[" + WrittenList(numbers, [](int number) { return Written(number); }) + "]";
}

std::string Written(const std::vector<std::string>& texts) {
  return "[" + WrittenList(texts, [](const std::string& text) { return Written(text); }) + "]";
}

std::string Written(const std::vector<Step>& steps) {
  if (steps.size() == 1 && steps[0].second == 0) return Written(steps[0].value);
  const auto write = [](const Step& step) {
    return Written(std::vector<int>{step.second, step.value});
  };
  return "[" + WrittenList(steps, write) + "]";
}

std::string Written(const std::vector<std::pair<int, std::string>>& texts) {
  const auto write = [](const auto& text) {
    return Written(text.first) + " = " + Written(text.second);
  };
  return "{ " + WrittenList(texts, write) + " }";
}

std::string Written(SimState state) {
  return '"' + std::string(kSimStates[static_cast<size_t>(state)]) + '"';
}

}  // namespace kxsim
