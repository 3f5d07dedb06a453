#include <profile/CommandLine.h>
#include <profile/Text.h>

#include <algorithm>
#include <charconv>
#include <utility>

namespace kxsim {
namespace {

constexpr std::string_view kExtendedMarks = "+$!*%^#";
constexpr std::string_view kNameMarks = "!%-./:_";

// Reads commands off the front of a line without blanks and in capital letters.
class Splitter {
 public:
  explicit Splitter(std::string_view line) : rest_(line) {}

  bool Done() const { return rest_.empty(); }

  bool Next(Invocation& command) {
    const std::string_view before = rest_;
    const bool good = kExtendedMarks.find(rest_.front()) != std::string_view::npos
                          ? Extended(command)
                          : Basic(command);
    command.text = before.substr(0, before.size() - rest_.size());
    if (!rest_.empty() && rest_.front() == ';') rest_.remove_prefix(1);
    return good;
  }

 private:
  // Takes characters off the front as long as they fit.
  template <typename Fits>
  std::string_view Take(Fits fits) {
    const auto end = std::find_if_not(rest_.begin(), rest_.end(), fits);
    const auto length = static_cast<size_t>(end - rest_.begin());
    const std::string_view taken = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return taken;
  }

  bool TakeMark(char mark) {
    if (rest_.empty() || rest_.front() != mark) return false;
    rest_.remove_prefix(1);
    return true;
  }

  std::string_view TakeParameters() {
    bool quoted = false;
    return Take([&](char byte) {
      if (byte == '"') quoted = !quoted;
      return quoted || byte != ';';
    });
  }

  void TakeForm(Invocation& command) {
    if (TakeMark('?')) {
      command.form = Form::kRead;
    } else if (TakeMark('=')) {
      command.form = TakeMark('?') ? Form::kTest : Form::kSet;
      if (command.form == Form::kSet) command.parameters = TakeParameters();
    }
  }

  bool Extended(Invocation& command) {
    command.name = rest_.front();
    rest_.remove_prefix(1);
    command.name += Take([](char byte) {
      return IsLetterOrDigit(byte) || kNameMarks.find(byte) != std::string_view::npos;
    });
    TakeForm(command);
    return command.name.size() > 1 && (rest_.empty() || rest_.front() == ';');
  }

  // "S3=13" or "S3?", with the next command right behind it.
  void TakeRegister(Invocation& command) {
    command.name += std::exchange(command.parameters, "");
    if (TakeMark('?')) {
      command.form = Form::kRead;
    } else if (TakeMark('=')) {
      command.form = Form::kSet;
      command.parameters = Take(IsDigit);
    }
  }

  bool Basic(Invocation& command) {
    if (TakeMark('&')) command.name = "&";
    if (rest_.empty() || !IsLetter(rest_.front())) return false;
    command.name += rest_.front();
    rest_.remove_prefix(1);
    // A number to dial takes the rest of the line: a ";" in it asks for a voice call.
    if (command.name == "D") {
      command.parameters = Take([](char) { return true; });
      return true;
    }
    command.parameters = Take(IsDigit);
    if (command.name == "S") TakeRegister(command);
    return true;
  }

  std::string_view rest_;
};

}  // namespace

bool SplitCommandLine(std::string_view line, std::vector<Invocation>& commands) {
  const std::string text = Normalised(line);
  Splitter splitter(std::string_view(text).substr(2));
  while (!splitter.Done()) {
    Invocation command;
    if (!splitter.Next(command)) return false;
    commands.push_back(std::move(command));
  }
  return true;
}

std::vector<std::string> SplitParameters(std::string_view parameters) {
  std::vector<std::string> parts(1);
  bool quoted = false;
  for (const char byte : parameters) {
    if (byte == '"') {
      quoted = !quoted;
    } else if (byte == ',' && !quoted) {
      parts.emplace_back();
    } else {
      parts.back() += byte;
    }
  }
  return parts;
}

std::optional<int> ToNumber(std::string_view text) {
  int number = 0;
  const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (failed != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace kxsim
