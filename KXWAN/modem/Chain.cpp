#include <KXWAN/modem/ChainPrivate.h>

#include <algorithm>
#include <cmath>

namespace kxwan {

Seconds Lateness::Most() const { return std::max(proven, guess); }

void Chain::Note(const Link& link, const Pace& pace, Lateness& lateness) {
  const bool same =
      length_ > 0 && delay_ && std::abs(link.delay - *delay_) < std::min(.1 * *delay_, .03) + .004;
  const bool usual = pace.InBand(link.delay) && !(length_ > 0 && offBeat_);
  if (!same && !usual) return Start(link, pace, lateness);
  if (!same && length_ == 0) {
    offBeat_ = false;
    delay_ = link.delay;
  }
  ++length_;
}

void Chain::Start(const Link& link, const Pace& pace, Lateness& lateness) {
  constexpr Seconds kLongestGuess = 10;
  offBeat_ = !pace.InBand(link.delay);
  const bool plausible =
      pace.Known() ? pace.Low() < .3 || link.delay >= .5 * pace.Low() : link.delay < 1;
  const bool undisturbed =
      lateness.proven < link.timeout || link.calm || (pace.Known() && !pace.HasBeat());
  const bool mayStart = link.firstTry && plausible && undisturbed;
  length_ = mayStart || !offBeat_ ? 1 : 0;
  delay_.reset();
  if (length_ > 0) delay_ = link.delay;
  if (!offBeat_) return;
  lateness.seen = true;
  lateness.guess = std::max(lateness.guess, std::min(link.service, kLongestGuess));
}

void Chain::NoteOutOfTurn(Seconds serviceBefore, Lateness& lateness) {
  Break();
  ForgetDelay();
  lateness.seen = true;
  lateness.proven = std::max(lateness.proven, serviceBefore);
}

bool Chain::IsLongEnough(const Lateness& lateness, Seconds timeout) const {
  return length_ >= (lateness.proven >= timeout ? 4 : 3);
}

bool Chain::IsOffBeat(const Pace& pace) const {
  return offBeat_ || !delay_ || !pace.InBand(*delay_);
}

}  // namespace kxwan
