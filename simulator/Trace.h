#pragma once

#include <simulator/Device.h>
#include <simulator/line/Loop.h>

#include <array>
#include <cstdio>
#include <string>
#include <string_view>

namespace kxsim {

// Text in which control characters and high bytes can be read: "\r", "\x1B".
std::string Readable(std::string_view bytes);

// Prints a dialogue, a line for each line said, with its time in seconds.
class Trace {
 public:
  // The name stands on every line; empty for none.
  Trace(FILE* output, bool colour, std::string name)
      : output_(output), colour_(colour), name_(std::move(name)) {}
  ~Trace() { Flush(); }
  Trace(const Trace&) = delete;
  Trace& operator=(const Trace&) = delete;

  void Note(Traffic kind, std::string_view bytes);
  // Prints what has been gathered of lines that are not complete.
  void Flush();

 private:
  static constexpr size_t kLongestLine = 256;

  // A line that is being said, one for each kind of traffic.
  struct Line {
    std::string bytes;
    Loop::Clock::time_point begun;
  };

  void Print(Traffic kind, Line& line);

  FILE* const output_;
  const bool colour_;
  const std::string name_;
  const Loop::Clock::time_point start_ = Loop::Clock::now();
  std::array<Line, 3> lines_;
};

}  // namespace kxsim
