#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kxtool {

// Whether a character is printable ASCII.
constexpr bool IsPrintable(char c) { return c >= ' ' && c <= '~'; }

// The text as it may go to a terminal: everything but printable ASCII is written as "\r", "\n",
// "\t" or "\x1B", so that no device can move the cursor or retitle a window.
std::string Printable(std::string_view text);

// The lines of a reply, without their ends and without empty ones.
std::vector<std::string> Lines(std::string_view text);

// The parts that are not empty, with the separator between them: "a, b".
std::string Joined(const std::vector<std::string>& parts, std::string_view separator);

// The parts of "a, b", without the blanks around them.
std::vector<std::string> SplitList(std::string_view list);

}  // namespace kxtool
