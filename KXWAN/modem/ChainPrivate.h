#pragma once

#include <KXWAN/modem/PacePrivate.h>

#include <optional>

namespace kxwan {

// How late a device has been seen.
struct Lateness {
  // More than any ordinary try outlasts.
  static constexpr Seconds kLate = 1.5;

  bool seen = false;   // a result came when its time was over
  Seconds guess = 0;   // by a result that fits no beat
  Seconds proven = 0;  // by a result that was certainly another command's

  Seconds Most() const;
};

// What the delays of results tell while some are outstanding. A chain of results that all came
// after the same delay shows that the device answers at its pace and owes nothing more.
class Chain {
 public:
  // A result that came first behind a try, this long after it was sent; service is how long the
  // device took for it at most.
  struct Link {
    Seconds delay;
    Seconds service;
    Seconds timeout;  // of the try
    bool firstTry;
    bool calm;  // the line had been quiet for long
  };

  void Note(const Link& link, const Pace& pace, Lateness& lateness);

  // A result that shows those in front of it to be another command's.
  void NoteOutOfTurn(Seconds serviceBefore, Lateness& lateness);

  bool IsLongEnough(const Lateness& lateness, Seconds timeout) const;

  // Whether the chain's delay is none of the usual ones.
  bool IsOffBeat(const Pace& pace) const;

  void Break() { length_ = 0; }
  void ForgetDelay() { delay_.reset(); }

 private:
  void Start(const Link& link, const Pace& pace, Lateness& lateness);

  int length_ = 0;
  std::optional<Seconds> delay_;
  bool offBeat_ = false;
};

}  // namespace kxwan
