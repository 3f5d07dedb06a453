#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace kxsim {

// Something to know about a line of a log.
struct LogNote {
  size_t line = 0;
  std::string text;
};

// Notes in the order of a log. A log that is no log would have one for every line.
class LogNotes {
 public:
  static constexpr size_t kMost = 200;

  void Add(LogNote note) {
    if (notes_.size() < kMost) return notes_.push_back(std::move(note));
    if (more_++ == 0) firstMore_ = note.line;
  }
  void Add(size_t line, std::string text) { Add({line, std::move(text)}); }

  std::vector<LogNote> Take() {
    if (more_ > 0) {
      notes_.push_back({firstMore_, "and " + std::to_string(more_) + " more from here on"});
    }
    return std::move(notes_);
  }

 private:
  std::vector<LogNote> notes_;
  size_t more_ = 0;
  size_t firstMore_ = 0;
};

}  // namespace kxsim
