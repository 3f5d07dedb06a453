#include <tool/kxwan/Secret.h>

#include <fcntl.h>
#include <signal.h>
#include <termios.h>
#include <tool/kxwan/Text.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>

namespace kxtool {
namespace {

constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};
termios shownTerminal;  // for the signal handler

// A program that is ended while the echo is off gives the terminal back as it was.
extern "C" void RestoreAndEnd(int number) {
  tcsetattr(STDIN_FILENO, TCSAFLUSH, &shownTerminal);
  signal(number, SIG_DFL);
  raise(number);
}

// Keeps the terminal from showing what is typed, as long as the object lives.
class HiddenInput {
 public:
  HiddenInput() {
    tcgetattr(STDIN_FILENO, &shownTerminal);
    for (const int number : kEndingSignals) signal(number, RestoreAndEnd);
    termios hidden = shownTerminal;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
  }
  ~HiddenInput() {
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &shownTerminal);
    for (const int number : kEndingSignals) signal(number, SIG_DFL);
  }
  HiddenInput(const HiddenInput&) = delete;
  HiddenInput& operator=(const HiddenInput&) = delete;
};

// One line, without its end; false at the end of the input. What is longer than any secret is cut.
bool ReadLine(int descriptor, std::string& line) {
  constexpr size_t kLongest = 128;
  line.clear();
  char c = '\0';
  ssize_t got = 0;
  while ((got = read(descriptor, &c, 1)) == 1 && c != '\n') {
    if (c != '\r' && line.size() < kLongest) line += c;
  }
  return got == 1 || !line.empty();
}

Result ReadLines(int descriptor, const std::string& what, std::vector<std::string>& secrets,
                 size_t count) {
  for (size_t i = 0; i < count; ++i) {
    std::string line;
    if (!ReadLine(descriptor, line)) {
      return WrongCall("There is no " + what + " to read: it takes " + std::to_string(count) +
                       (count == 1 ? " line." : " lines."));
    }
    secrets.push_back(line);
  }
  return {};
}

Result AskOnTerminal(const std::vector<std::string>& prompts, const std::string& what,
                     std::vector<std::string>& secrets) {
  if (isatty(STDIN_FILENO) == 0) {
    return WrongCall("The " + what +
                     " is asked for on a terminal or read with --pin-file FILE; "
                     "--pin-file - reads standard input.");
  }
  const HiddenInput hidden;
  for (const std::string& prompt : prompts) {
    std::fprintf(stderr, "%s: ", prompt.c_str());
    Result failure = ReadLines(STDIN_FILENO, what, secrets, 1);
    std::fprintf(stderr, "\n");
    if (failure) return failure;
  }
  return {};
}

// The descriptor that the text names; -1 when it is no number.
int DescriptorOf(const std::string& source) {
  if (source == "-") return STDIN_FILENO;
  int number = -1;
  const char* end = source.data() + source.size();
  const auto [stop, error] = std::from_chars(source.data(), end, number);
  return error == std::errc() && stop == end ? number : -1;
}

}  // namespace

Result ReadSecrets(const std::string& source, const std::vector<std::string>& prompts,
                   const std::string& what, std::vector<std::string>& secrets) {
  if (source.empty()) return AskOnTerminal(prompts, what, secrets);
  if (const int given = DescriptorOf(source); given >= 0) {
    return ReadLines(given, what, secrets, prompts.size());
  }
  const int descriptor = open(source.c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC);
  if (descriptor < 0) {
    return WrongCall("The file " + Printable(source) + " cannot be read: " + std::strerror(errno) +
                     ".");
  }
  Result result = ReadLines(descriptor, what, secrets, prompts.size());
  close(descriptor);
  return result;
}

}  // namespace kxtool
