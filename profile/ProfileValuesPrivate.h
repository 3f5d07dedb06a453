#pragma once

#include <profile/Profile.h>
#include <toml++/toml.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kxsim {

// Each reads one kind of value; false when it is not of that kind.
bool ReadNumberIn(const toml::node& node, int low, int high, int& number);
bool ReadFlag(const toml::node& node, bool& flag);
bool ReadText(const toml::node& node, std::string& text);
bool ReadTexts(const toml::node& node, std::vector<std::string>& texts);
bool ReadSpeed(const toml::node& node, int& speed);
bool ReadSpeeds(const toml::node& node, std::vector<int>& speeds);
// Four digits or more and nothing else.
bool ReadCode(const toml::node& node, std::string& digits);
bool ReadSimState(const toml::node& node, SimState& state);
bool ReadFamilies(const toml::node& node, std::vector<std::string>& families);
// A number, or pairs of a second and the number from then on.
bool ReadStepsIn(const toml::node& node, int low, int high, std::vector<Step>& steps);
// A table whose keys are numbers.
bool ReadTextsAt(const toml::node& node, int low, int high,
                 std::vector<std::pair<int, std::string>>& texts);

template <int low, int high>
bool ReadNumber(const toml::node& node, int& number) {
  return ReadNumberIn(node, low, high, number);
}

template <int low, int high>
bool ReadSteps(const toml::node& node, std::vector<Step>& steps) {
  return ReadStepsIn(node, low, high, steps);
}

template <int low, int high>
bool ReadNumbered(const toml::node& node, std::vector<std::pair<int, std::string>>& texts) {
  return ReadTextsAt(node, low, high, texts);
}

// Each gives a value as it stands in a profile.
std::string Written(int number);
std::string Written(bool flag);
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

// A profile is Unicode, a reply is bytes: a character up to U+00FF stands for the byte.
std::string BytesOf(const std::string& text);
// A text in quotes that BytesOf turns into these bytes again.
std::string WrittenBytes(const std::string& bytes);

}  // namespace kxsim
