#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kxsim {

// Characters as command lines have them: ASCII, whatever the locale.
constexpr bool IsDigit(char byte) { return byte >= '0' && byte <= '9'; }
constexpr char Upper(char byte) {
  return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
}
constexpr char Lower(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}
constexpr bool IsLetter(char byte) { return Upper(byte) >= 'A' && Upper(byte) <= 'Z'; }
constexpr bool IsHexDigit(char byte) {
  return IsDigit(byte) || (Upper(byte) >= 'A' && Upper(byte) <= 'F');
}
constexpr bool IsLetterOrDigit(char byte) { return IsLetter(byte) || IsDigit(byte); }

// A command as it is compared: capital letters and no blanks, except inside quotes.
std::string Normalised(std::string_view command);

// Where a word in capital letters stands in a text, in capital or in small ones; npos when it does
// not.
size_t FindIgnoringCase(std::string_view text, std::string_view word, size_t from = 0);

// The text as it may go to a terminal: everything but printable ASCII is written as "\r", "\n" or
// "\x1B", so that neither a device nor a file can move the cursor or retitle a window.
std::string Printable(std::string_view text);

// The text in quotes; the beginning of it when it is long.
std::string Quoted(std::string_view text);

std::string Joined(const std::vector<std::string>& parts, std::string_view separator = ", ");

}  // namespace kxsim
