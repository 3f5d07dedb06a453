#include <profile/Toml.h>
#include <toml++/toml.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace kxsim {
namespace {

std::string BytesOf(std::string_view text) {
  std::string bytes;
  for (size_t i = 0; i < text.size(); ++i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    // U+0080 to U+00FF take two bytes, the first of which is 0xC2 or 0xC3.
    if ((lead == 0xC2 || lead == 0xC3) && i + 1 < text.size()) {
      const auto next = static_cast<unsigned char>(text[++i]);
      bytes += static_cast<char>((lead & 3U) << 6U | (next & 0x3FU));
    } else {
      bytes += text[i];
    }
  }
  return bytes;
}

TomlNode NodeOf(const toml::node& node);

TomlTable TableOf(const toml::table& table) {
  TomlTable items;
  for (const auto& [name, node] : table) items.push_back({BytesOf(name.str()), NodeOf(node)});
  std::sort(items.begin(), items.end(), [](const TomlItem& one, const TomlItem& other) {
    return std::pair(one.node.line, one.node.column) <
           std::pair(other.node.line, other.node.column);
  });
  return items;
}

TomlList ListOf(const toml::array& array) {
  TomlList list;
  for (const toml::node& item : array) list.push_back(NodeOf(item));
  return list;
}

TomlNode NodeOf(const toml::node& node) {
  TomlNode result;
  result.line = static_cast<int>(node.source().begin.line);
  result.column = static_cast<int>(node.source().begin.column);
  node.visit([&](const auto& typed) {
    if constexpr (toml::is_table<decltype(typed)>) {
      result.value = TableOf(typed);
    } else if constexpr (toml::is_array<decltype(typed)>) {
      result.value = ListOf(typed);
    } else if constexpr (toml::is_string<decltype(typed)>) {
      result.value = BytesOf(*typed);
    } else if constexpr (toml::is_number<decltype(typed)> || toml::is_boolean<decltype(typed)>) {
      result.value = *typed;
    }
  });
  return result;
}

// What the parser says of a number that its types cannot hold repeats the number to its last digit.
std::string Sentence(std::string_view description) {
  constexpr std::string_view kUnfit[] = {"not representable", "could not be interpreted"};
  const bool unfit = std::any_of(std::begin(kUnfit), std::end(kUnfit), [=](std::string_view text) {
    return description.find(text) != description.npos;
  });
  return unfit ? "expected a number from -2000000000 to 2000000000" : std::string(description);
}

}  // namespace

Failure FailureAt(const std::string& fileName, int line, const std::string& sentence) {
  return {fileName + ":" + std::to_string(line) + ": " + sentence};
}

Result ParseToml(std::string_view text, const std::string& fileName, TomlTable& table) {
  try {
    table = TableOf(toml::parse(text, fileName));
    return {};
  } catch (const toml::parse_error& failure) {
    const auto line = static_cast<int>(failure.source().begin.line);
    return FailureAt(fileName, line, Sentence(failure.description()));
  }
}

}  // namespace kxsim
