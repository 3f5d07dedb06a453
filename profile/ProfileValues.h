#pragma once

#include <profile/Profile.h>
#include <profile/Toml.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kxsim {

// Each reads one kind of value; false when it is not of that kind.
bool ReadNumberIn(const TomlNode& node, int low, int high, int& number);
bool ReadFlag(const TomlNode& node, bool& flag);
bool ReadText(const TomlNode& node, std::string& text);
bool ReadTexts(const TomlNode& node, std::vector<std::string>& texts);
bool ReadSpeed(const TomlNode& node, int& speed);
bool ReadSpeeds(const TomlNode& node, std::vector<int>& speeds);
// Four digits or more and nothing else.
bool ReadCode(const TomlNode& node, std::string& digits);
bool ReadSimState(const TomlNode& node, SimState& state);
bool ReadFamilies(const TomlNode& node, std::vector<std::string>& families);
// A number, or pairs of a second and the number from then on.
bool ReadStepsIn(const TomlNode& node, int low, int high, std::vector<Step>& steps);
// A table whose keys are numbers.
bool ReadTextsAt(const TomlNode& node, int low, int high,
                 std::vector<std::pair<int, std::string>>& texts);

// A list of values of one kind.
template <auto read, typename Value>
bool ReadList(const TomlNode& node, std::vector<Value>& values) {
  const auto* list = ValueOf<TomlList>(node);
  return list != nullptr && std::all_of(list->begin(), list->end(), [&](const TomlNode& item) {
           return read(item, values.emplace_back());
         });
}

template <int low, int high>
bool ReadNumber(const TomlNode& node, int& number) {
  return ReadNumberIn(node, low, high, number);
}

template <int low, int high>
bool ReadSteps(const TomlNode& node, std::vector<Step>& steps) {
  return ReadStepsIn(node, low, high, steps);
}

template <int low, int high>
bool ReadNumbered(const TomlNode& node, std::vector<std::pair<int, std::string>>& texts) {
  return ReadTextsAt(node, low, high, texts);
}

// Several of them, parted by commas.
template <typename Values, typename Write>
std::string WrittenList(const Values& values, Write write) {
  std::string written;
  for (const auto& value : values) written += (written.empty() ? "" : ", ") + write(value);
  return written;
}

// Each gives a value as it stands in a profile.
std::string Written(int number);
std::string Written(bool flag);
std::string Written(double number);
// In quotes, every byte of it.
std::string Written(const std::string& text);
std::string Written(const std::vector<int>& numbers);
std::string Written(const std::vector<std::string>& texts);
std::string Written(const std::vector<Step>& steps);
std::string Written(const std::vector<std::pair<int, std::string>>& texts);
std::string Written(SimState state);
// A value that is not there has no text.
template <typename Value>
std::string Written(const std::optional<Value>& value) {
  return value ? Written(*value) : "";
}

}  // namespace kxsim
