#include <simulator/line/LineEditor.h>

namespace kxsim {
namespace {

constexpr char kCancel = 0x18;
constexpr size_t kPrefixLength = 2;  // "AT"

bool IsLetter(char byte, char letter) { return (byte | 0x20) == letter; }

}  // namespace

// Everything up to an "A" is noise, and a second "A" may be the one that counts.
std::optional<std::string> LineEditor::FeedPrefix(char byte) {
  const bool begun = !line_.empty();
  if (begun && byte == '/') {
    line_.clear();
    return "A/";
  }
  if (begun && IsLetter(byte, 't')) {
    line_ += byte;
  } else {
    line_.assign(IsLetter(byte, 'a') ? 1 : 0, byte);
  }
  return std::nullopt;
}

std::optional<std::string> LineEditor::Feed(char byte) {
  // The prefix first: the end of line may be one of its letters.
  if (line_.size() < kPrefixLength) return FeedPrefix(byte);
  if (byte == endOfLine) return std::exchange(line_, "");
  if (byte == kCancel) {
    line_.clear();
  } else if (byte == backspace || byte == 0x7F) {
    // The "AT" itself cannot be taken back.
    if (line_.size() > kPrefixLength) line_.pop_back();
  } else if (static_cast<unsigned char>(byte) >= ' ' && line_.size() < kLongestLine) {
    line_ += byte;
  }
  return std::nullopt;
}

void LineEditor::Clear() { line_.clear(); }

}  // namespace kxsim
