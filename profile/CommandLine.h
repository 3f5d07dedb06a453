#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kxsim {

enum class Form { kExecute, kRead, kSet, kTest };

// One command of a command line.
struct Invocation {
  std::string name;  // "E", "&C", "S", "D", "+CSQ"; in capital letters
  Form form = Form::kExecute;
  std::string parameters;  // of a set form; the number of a basic command; the number to dial
  std::string text;        // the command as it was written, without "AT"
};

// Takes a line apart that begins with "AT". False when it breaks the grammar; the commands in
// front of the break are there all the same.
bool SplitCommandLine(std::string_view line, std::vector<Invocation>& commands);

// The parts between commas, without the quotes around them. Commas inside quotes part nothing.
std::vector<std::string> SplitParameters(std::string_view parameters);

// A decimal number and nothing else.
std::optional<int> ToNumber(std::string_view text);

}  // namespace kxsim
