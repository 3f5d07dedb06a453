#include <simulator/call/EscapeDetector.h>

#include <algorithm>

namespace kxsim {
namespace {

constexpr size_t kEscapeLength = 3;
constexpr int kHighestCharacter = 127;

}  // namespace

void EscapeDetector::Start(int character, std::chrono::milliseconds guard) {
  Disarm();
  character_ = character;
  guard_ = guard;
  last_ = Loop::Clock::now();
}

void EscapeDetector::Feed(std::string_view bytes) {
  const Loop::Clock::time_point now = Loop::Clock::now();
  const bool quietBefore = now - last_ >= guard_;
  last_ = now;
  const bool onlyEscapes =
      std::all_of(bytes.begin(), bytes.end(), [this](char byte) { return byte == character_; });
  const size_t before = count_;
  Disarm();
  if (!onlyEscapes || character_ > kHighestCharacter) return;
  if (!quietBefore && before == 0) return;
  count_ = quietBefore ? bytes.size() : before + bytes.size();
  if (count_ == kEscapeLength) {
    timer_ = loop_.At(now + guard_, [this] {
      timer_.reset();
      Disarm();
      escaped_();
    });
  }
}

void EscapeDetector::Disarm() {
  if (timer_) loop_.Cancel(*timer_);
  timer_.reset();
  count_ = 0;
}

}  // namespace kxsim
