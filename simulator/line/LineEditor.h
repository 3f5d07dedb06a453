#pragma once

#include <optional>
#include <string>
#include <utility>

namespace kxsim {

// Puts the bytes that a host types together to command lines.
class LineEditor {
 public:
  char endOfLine = '\r';  // S3
  char backspace = '\b';  // S5

  // Takes one byte. Gives a line when that byte completes one: everything from "AT" on, or "A/".
  // A line that does not begin like that is ignored.
  std::optional<std::string> Feed(char byte);
  void Clear();

  // A longer line is refused: it arrives as "AT" and this many bytes, cut off.
  static constexpr size_t kLongestLine = 2048;

 private:
  std::optional<std::string> FeedPrefix(char byte);

  std::string line_;
};

}  // namespace kxsim
