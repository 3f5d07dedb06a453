#pragma once

#include <simulator/line/Loop.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string_view>

namespace kxsim {

// Finds "+++" with silence before and after it in the data of a call.
class EscapeDetector {
 public:
  EscapeDetector(Loop& loop, Loop::Callback escaped) : loop_(loop), escaped_(std::move(escaped)) {}
  ~EscapeDetector() { Disarm(); }

  // A character above 127 switches it off.
  void Start(int character, std::chrono::milliseconds guard);
  void Feed(std::string_view bytes);
  void Disarm();

 private:
  Loop& loop_;
  const Loop::Callback escaped_;
  int character_ = '+';
  std::chrono::milliseconds guard_ = {};
  Loop::Clock::time_point last_;
  size_t count_ = 0;
  std::optional<Loop::TimerKey> timer_;
};

}  // namespace kxsim
