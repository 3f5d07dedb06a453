#include <profile/LineSpeed.h>
#include <profile/ProfileValuesPrivate.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace kxsim {
namespace {

constexpr std::array<std::string_view, 5> kSimStates = {"none", "ready", "pin", "puk", "failure"};
constexpr std::array<std::string_view, 4> kFamilies = {"gsm", "gprs", "cdma", "qualcomm"};
constexpr int kLastSecond = 1'000'000;

template <typename Value>
bool ReadExactly(const toml::node& node, Value& value) {
  const std::optional<Value> given = node.value_exact<Value>();
  if (given) value = *given;
  return given.has_value();
}

// A list of values of one kind.
template <auto read, typename Value>
bool ReadList(const toml::node& node, std::vector<Value>& values) {
  const toml::array* list = node.as_array();
  return list != nullptr && std::all_of(list->begin(), list->end(), [&](const toml::node& item) {
           return read(item, values.emplace_back());
         });
}

bool IsDigit(char byte) { return byte >= '0' && byte <= '9'; }

}  // namespace

bool ReadNumberIn(const toml::node& node, int low, int high, int& number) {
  int64_t value = 0;
  if (!ReadExactly(node, value) || value < low || value > high) return false;
  number = static_cast<int>(value);
  return true;
}

bool ReadFlag(const toml::node& node, bool& flag) { return ReadExactly(node, flag); }

bool ReadText(const toml::node& node, std::string& text) { return ReadExactly(node, text); }

bool ReadTexts(const toml::node& node, std::vector<std::string>& texts) {
  return ReadList<ReadText>(node, texts);
}

bool ReadSpeed(const toml::node& node, int& speed) {
  return ReadNumberIn(node, 1, 1'000'000, speed) && IsLineSpeed(speed);
}

bool ReadSpeeds(const toml::node& node, std::vector<int>& speeds) {
  return ReadList<ReadSpeed>(node, speeds);
}

bool ReadCode(const toml::node& node, std::string& digits) {
  return ReadText(node, digits) && digits.size() >= 4 &&
         std::all_of(digits.begin(), digits.end(), IsDigit);
}

bool ReadSimState(const toml::node& node, SimState& state) {
  std::string name;
  if (!ReadText(node, name)) return false;
  const auto found = std::find(kSimStates.begin(), kSimStates.end(), name);
  if (found == kSimStates.end()) return false;
  state = static_cast<SimState>(found - kSimStates.begin());
  return true;
}

bool ReadFamilies(const toml::node& node, std::vector<std::string>& families) {
  return ReadTexts(node, families) &&
         std::all_of(families.begin(), families.end(), [](const std::string& name) {
           return std::find(kFamilies.begin(), kFamilies.end(), name) != kFamilies.end();
         });
}

bool ReadStepsIn(const toml::node& node, int low, int high, std::vector<Step>& steps) {
  if (ReadNumberIn(node, low, high, steps.emplace_back().value)) return true;
  steps.clear();
  const toml::array* list = node.as_array();
  if (list == nullptr || list->empty()) return false;
  for (const toml::node& item : *list) {
    const toml::array* pair = item.as_array();
    const int earliest = steps.empty() ? 0 : steps.back().second;
    Step step;
    if (pair == nullptr || pair->size() != 2 ||
        !ReadNumberIn(*pair->get(0), earliest, kLastSecond, step.second) ||
        !ReadNumberIn(*pair->get(1), low, high, step.value)) {
      return false;
    }
    steps.push_back(step);
  }
  return true;
}

bool ReadTextsAt(const toml::node& node, int low, int high,
                 std::vector<std::pair<int, std::string>>& texts) {
  const toml::table* table = node.as_table();
  if (table == nullptr) return false;
  for (const auto& [key, value] : *table) {
    const std::string_view digits = key.str();
    const char* end = digits.data() + digits.size();
    std::pair<int, std::string>& text = texts.emplace_back();
    const auto [stop, failed] = std::from_chars(digits.data(), end, text.first);
    if (failed != std::errc() || stop != end || text.first < low || text.first > high ||
        !ReadText(value, text.second)) {
      return false;
    }
  }
  std::sort(texts.begin(), texts.end());
  return true;
}

std::string Written(SimState state) {
  return '"' + std::string(kSimStates[static_cast<size_t>(state)]) + '"';
}

}  // namespace kxsim
