#include <simulator/Trace.h>

#include <chrono>

namespace kxsim {
namespace {

// How one kind of traffic looks.
struct Look {
  const char* mark;
  const char* colour;
};

constexpr Look kLooks[] = {{">>", "\033[36m"}, {"<<", "\033[32m"}, {"--", "\033[33m"}};
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
  if (kind != kind_) Flush();
  kind_ = kind;
  for (const char byte : bytes) {
    line_ += byte;
    // A command ends with "\r", a reply's line with "\n".
    const char end = kind == Traffic::kFromHost ? '\r' : '\n';
    if (byte == end || line_.size() >= kLongestLine) Flush();
  }
  if (kind == Traffic::kNote) Flush();
}

void Trace::Flush() {
  // The blank line in front of a reply says nothing.
  if (!line_.empty() && line_ != "\r\n" && line_ != "\n") {
    const std::chrono::duration<double> time = Loop::Clock::now() - start_;
    const Look& look = kLooks[static_cast<size_t>(kind_)];
    fprintf(output_, "%9.3f %s%s%s%s %s%s\n", time.count(), name_.c_str(), name_.empty() ? "" : " ",
            colour_ ? look.colour : "", look.mark, Readable(line_).c_str(), colour_ ? kPlain : "");
    fflush(output_);
  }
  line_.clear();
}

}  // namespace kxsim
