#include <simulator/line/LineEditor.h>

namespace kxsim {
namespace {

constexpr char kCancel = 0x18;

bool IsLetter(char byte, char letter) { return (byte | 0x20) == letter; }

}  // namespace

std::optional<std::string> LineEditor::Feed(char byte) {
  if (line_.empty() || (line_.size() == 1 && !IsLetter(byte, 't') && byte != '/')) {
    // Everything up to an "A" is noise. A second "A" may be the one that counts.
    line_.assign(IsLetter(byte, 'a') ? 1 : 0, byte);
    return std::nullopt;
  }
  if (line_.size() == 1 && byte == '/') {
    line_.clear();
    return "A/";
  }
  if (byte == endOfLine) return std::exchange(line_, "");
  if (byte == kCancel) {
    line_.clear();
  } else if (byte == backspace || byte == 0x7F) {
    // The "AT" itself cannot be taken back.
    if (line_.size() > 2) line_.pop_back();
  } else if (static_cast<unsigned char>(byte) >= ' ' && line_.size() < kLongestLine) {
    line_ += byte;
  }
  return std::nullopt;
}

void LineEditor::Clear() { line_.clear(); }

}  // namespace kxsim
