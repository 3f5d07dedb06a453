#include <simulator/Trace.h>

#include <chrono>
#include <utility>

namespace kxsim {
namespace {

// How one kind of traffic looks.
struct Look {
  const char* mark;
  const char* colour;
};

constexpr Look kLooks[] = {{">>", "\033[36m"}, {"<<", "\033[32m"}, {"--", "\033[33m"}};
constexpr std::chrono::seconds kLongestWait{1};
constexpr const char* kPlain = "\033[0m";

std::string ReadableByte(char byte) {
  if (byte == '\r') return "\\r";
  if (byte == '\n') return "\\n";
  if (byte == '\\') return "\\\\";
  if (byte >= ' ' && byte <= '~') return std::string(1, byte);
  char text[5];
  snprintf(text, sizeof text, "\\x%02X", static_cast<unsigned char>(byte));
  return text;
}

}  // namespace

std::string Readable(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) text += ReadableByte(byte);
  return text;
}

void Trace::Note(Traffic kind, std::string_view bytes) {
  const Loop::Clock::time_point now = Loop::Clock::now();
  Line& line = lines_[static_cast<size_t>(kind)];
  // What is typed by hand, or is no line at all, shall not wait for its end for ever.
  if (now - line.begun > kLongestWait) Print(kind, line);
  // A command ends with "\r", a reply's line with "\n".
  const char end = kind == Traffic::kFromHost ? '\r' : '\n';
  for (const char byte : bytes) {
    if (line.bytes.empty()) line.begun = now;
    line.bytes += byte;
    if (byte == end || line.bytes.size() >= kLongestLine) Print(kind, line);
  }
  if (kind == Traffic::kNote) Print(kind, line);
}

void Trace::Flush() {
  for (size_t kind = 0; kind < lines_.size(); ++kind) {
    Print(static_cast<Traffic>(kind), lines_[kind]);
  }
}

void Trace::Print(Traffic kind, Line& line) {
  const std::string bytes = std::exchange(line.bytes, "");
  // The blank line in front of a reply says nothing.
  if (bytes.empty() || bytes == "\r\n" || bytes == "\n") return;
  const std::chrono::duration<double> time = line.begun - start_;
  const Look& look = kLooks[static_cast<size_t>(kind)];
  fprintf(output_, "%9.3f %s%s%s%s %s%s\n", time.count(), name_.c_str(), name_.empty() ? "" : " ",
          colour_ ? look.colour : "", look.mark, Readable(bytes).c_str(), colour_ ? kPlain : "");
  fflush(output_);
}

}  // namespace kxsim
