#include <profile/Text.h>

#include <algorithm>
#include <cstdio>

namespace kxsim {
namespace {

std::string PrintableByte(char byte) {
  if (byte == '\r') return "\\r";
  if (byte == '\n') return "\\n";
  if (byte >= ' ' && byte <= '~') return std::string(1, byte);
  char text[5];
  snprintf(text, sizeof text, "\\x%02X", static_cast<unsigned char>(byte));
  return text;
}

}  // namespace

std::string Normalised(std::string_view command) {
  std::string result;
  bool quoted = false;
  for (const char byte : command) {
    if (byte == '"') quoted = !quoted;
    if (byte == ' ' && !quoted) continue;
    result += quoted ? byte : Upper(byte);
  }
  return result;
}

size_t FindIgnoringCase(std::string_view text, std::string_view word, size_t from) {
  const auto* start = text.begin() + std::min(from, text.size());
  const auto* found = std::search(start, text.end(), word.begin(), word.end(),
                                  [](char one, char other) { return Upper(one) == other; });
  return found == text.end() ? text.npos : static_cast<size_t>(found - text.begin());
}

std::string Printable(std::string_view text) {
  std::string printable;
  for (const char byte : text) printable += PrintableByte(byte);
  return printable;
}

std::string Quoted(std::string_view text) {
  constexpr size_t kLongest = 60;
  const std::string shown(text.substr(0, kLongest));
  return '"' + shown + (text.size() > kLongest ? "...\"" : "\"");
}

std::string Joined(const std::vector<std::string>& parts, std::string_view separator) {
  std::string joined;
  for (const std::string& part : parts) {
    if (&part != &parts.front()) joined += separator;
    joined += part;
  }
  return joined;
}

}  // namespace kxsim
