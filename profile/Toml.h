#pragma once

#include <profile/Failure.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kxsim {

struct TomlItem;
struct TomlNode;
using TomlList = std::vector<TomlNode>;
using TomlTable = std::vector<TomlItem>;  // in the order of the file

// A value of a TOML file. Its texts are bytes: a character up to U+00FF stands for that byte.
struct TomlNode {
  // A date is nothing here.
  std::variant<std::monostate, bool, int64_t, double, std::string, TomlList, TomlTable> value;
  int line = 0;
  int column = 0;
};

struct TomlItem {
  std::string name;
  TomlNode node;
};

// The value when it is of that kind, otherwise null.
template <typename Kind>
const Kind* ValueOf(const TomlNode& node) {
  return std::get_if<Kind>(&node.value);
}

// A sentence with the file and the line in front.
Failure FailureAt(const std::string& fileName, int line, const std::string& sentence);

Result ParseToml(std::string_view text, const std::string& fileName, TomlTable& table);

}  // namespace kxsim
