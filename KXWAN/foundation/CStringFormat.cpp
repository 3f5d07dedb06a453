#include <KXWAN/foundation/CString.h>

#include <KXWAN/foundation/CStringPrivate.h>
#include <KXWAN/foundation/TextPrivate.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

using kxwan::IsDigit;

namespace {

constexpr int kNumberRoom = 32;
constexpr int kFloatingRoom = 128;
constexpr int kNullTextRoom = 6;
constexpr int kAbsent = -1;

// Walks a format and its arguments and bounds the length of the result from above.
// Deliberate: each literal character counts as the whole rest of the format. Callers format into
// the room that is left and count on this much.
class FormatEstimate {
 public:
  FormatEstimate(const char* format, va_list arguments)
      : at_(format), end_(format + std::strlen(format)) {
    va_copy(arguments_, arguments);
    // Room for the format itself and its NUL on top.
    total_ = end_ - at_ + 1;
    while (at_ < end_) Step();
  }
  ~FormatEstimate() { va_end(arguments_); }
  FormatEstimate(const FormatEstimate&) = delete;
  FormatEstimate& operator=(const FormatEstimate&) = delete;

  // What to reserve for a result of this length.
  int Room(int needed) const {
    const int64_t room = inStep_ ? std::max<int64_t>(total_, needed) : total_ + needed;
    return static_cast<int>(std::min<int64_t>(room, kxwan::kMaxTextLength));
  }

 private:
  void Step() {
    const bool literal = *at_ != '%' || *++at_ == '%';
    if (literal) total_ += end_ - at_;
    if (!literal) Conversion();
    if (at_ < end_) ++at_;
  }

  void Conversion() {
    width_ = 0;
    precision_ = kAbsent;
    for (; at_ < end_ && std::strchr("#*-+0 ", *at_) != nullptr; ++at_) {
      if (*at_ == '#') total_ += 2;
      if (*at_ == '*') width_ = Argument<int>();
    }
    if (IsDigit(*at_)) width_ = Number();
    if (*at_ == '.') Precision();
    const char size = SizePrefix();
    total_ += Item(size, *at_);
  }

  void Precision() {
    if (*++at_ == '*') {
      ++at_;
      precision_ = Argument<int>();
    } else {
      precision_ = Number();
    }
  }

  char SizePrefix() {
    if (std::strncmp(at_, "I64", 3) == 0) {
      at_ += 3;
      return 'I';
    }
    if (*at_ == '\0' || std::strchr("hlFLN", *at_) == nullptr) return '\0';
    return *at_++;
  }

  int64_t Item(char size, char conversion) {
    const bool isLong = size == 'l';
    if (conversion == 's' && !isLong) return Text();
    if (conversion == 'S' && size == 'h') return Text();
    if (conversion == '\0') return 0;
    if (std::strchr("cC", conversion) != nullptr && !isLong) return Character();
    if (std::strchr("diouxX", conversion) != nullptr) return Integer(size);
    if (std::strchr("egG", conversion) != nullptr) return Floating(size);
    if (conversion == 'p') return Pointer();
    if (conversion == 'n') return Nothing();
    // Deliberate: any other conversion counts nothing and its argument stays where it is. What
    // follows would be read from the wrong place, so no argument is looked at from here on.
    inStep_ = false;
    return 0;
  }

  int64_t Text() {
    const char* text = Argument<const char*>();
    size_t length = kNullTextRoom;
    // A precision may stand for a missing NUL.
    if (text != nullptr) {
      length = precision_ > 0 ? strnlen(text, static_cast<size_t>(precision_)) : std::strlen(text);
    }
    int64_t room = std::max<int64_t>(static_cast<int64_t>(length), 1);
    if (precision_ >= 0) room = std::min<int64_t>(room, precision_);
    return std::max<int64_t>(room, width_);
  }

  int64_t Character() {
    Argument<int>();
    return std::max(2, width_);
  }

  int64_t Integer(char size) {
    if (size == 'I') {  // NOLINT(bugprone-branch-clone): int64_t is not long everywhere
      Argument<int64_t>();
    } else if (size == 'l') {
      Argument<long>();
    } else {
      Argument<int>();
    }
    return AtLeast(kNumberRoom);
  }

  int64_t Floating(char size) {
    if (size == 'L') {
      Argument<long double>();
    } else {
      Argument<double>();
    }
    return AtLeast(kFloatingRoom);
  }

  int64_t Pointer() {
    Argument<void*>();
    return AtLeast(kNumberRoom);
  }

  int64_t Nothing() {
    Argument<int*>();
    return 0;
  }

  int64_t AtLeast(int64_t room) const {
    const int64_t field = static_cast<int64_t>(width_) + std::max(precision_, 0);
    return std::max(room, field);
  }

  int Number() {
    int64_t number = 0;
    for (; IsDigit(*at_); ++at_) {
      number = std::min<int64_t>(number * 10 + (*at_ - '0'), kxwan::kMaxTextLength);
    }
    return static_cast<int>(number);
  }

  template <typename T>
  T Argument() {
    return inStep_ ? va_arg(arguments_, T) : T();
  }

  const char* at_;
  const char* end_;
  va_list arguments_;
  int64_t total_;
  int width_ = 0;
  int precision_ = kAbsent;
  bool inStep_ = true;
};

int Print(char* buffer, size_t size, const char* format, va_list arguments) {
  va_list copy;
  va_copy(copy, arguments);
  const int length = std::vsnprintf(buffer, size, format, copy);
  va_end(copy);
  return length;
}

}  // namespace

// The text is formatted aside first: this object's own characters may be among the arguments, and
// its length is then known whatever the estimate says.
void CString::FormatV(const char* format, va_list arguments) {
  const FormatEstimate estimate(format, arguments);
  char brief[256];
  const char* result = brief;
  std::unique_ptr<char[]> whole;
  const int length = Print(brief, sizeof brief, format, arguments);
  if (length < 0) return AssignCopy(0, "");
  const size_t size = static_cast<size_t>(length) + 1;
  if (size > sizeof brief) {
    whole.reset(new (std::nothrow) char[size]);
    if (whole == nullptr) return AssignCopy(0, "");
    Print(whole.get(), size, format, arguments);
    result = whole.get();
  }
  if (GetBuffer(estimate.Room(length)) == nullptr && GetBuffer(length) == nullptr) {
    return AssignCopy(0, "");
  }
  std::memcpy(m_pchData, result, size);
  ReleaseBuffer();
}

void CString::Format(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  FormatV(format, arguments);
  va_end(arguments);
}

void CString::Format(unsigned int id, ...) {
  LoadString(id);
  AssignCopy(0, "");
}

int CString::LoadString(unsigned int /*id*/) { return 0; }
