#pragma once

#include <KXWAN/modem/PacePrivate.h>
#include <KXWAN/modem/ReplyPrivate.h>

#include <cstddef>
#include <limits>
#include <string>

namespace kxwan {

// Some devices give a result twice, whole or only its last line, one right behind the other. This
// remembers the result that came last and whether doubles were seen.
class Doubles {
 public:
  // Results that come twice come within this.
  static constexpr Seconds kBetween = .03;

  void Note(const FinalResult& final, Seconds service, Seconds now);
  void NoteDouble() { expected_ = kExpectedFor; }

  // A result that was not doubled. After many of them doubles are no longer expected.
  void NoteSingle() { expected_ -= expected_ > 0 ? 1 : 0; }

  bool AreExpected() const { return expected_ > 0; }

  // Whether a result repeats the one before it at once.
  bool RepeatsAtOnce(const FinalResult& final, Seconds now) const;

  // When the result came last, and how long the device took for it.
  Seconds At() const { return at_; }
  Seconds Service() const { return service_; }

 private:
  static constexpr size_t kEnoughText = 64;
  static constexpr int kExpectedFor = 100;

  int expected_ = 0;
  Seconds at_ = -std::numeric_limits<Seconds>::infinity();
  Seconds service_ = 0;
  int code_ = kResultTimeout;
  size_t length_ = 0;  // of its text
  std::string begin_;
};

}  // namespace kxwan
