#include <KXWAN/modem/PacePrivate.h>

#include <algorithm>
#include <utility>

namespace kxwan {

// The oldest delay gives its place to the new one, which then moves to where it belongs.
void Pace::Learn(Seconds delay) {
  Seconds* place = sorted_ + count_;
  if (count_ < kDelays) {
    ++count_;
  } else {
    place = std::lower_bound(sorted_, place, delays_[next_]);
  }
  delays_[next_] = delay;
  next_ = (next_ + 1) % kDelays;

  *place = delay;
  for (; place > sorted_ && place[-1] > delay; --place) std::swap(place[-1], place[0]);
  for (; place + 1 < sorted_ + count_ && place[1] < delay; ++place) std::swap(place[0], place[1]);
}

bool Pace::Fits(Seconds delay) const {
  constexpr Seconds kPrompt = .15;
  if (!Known()) return delay < kPrompt;
  if (!HasBeat()) return High() <= .5 && delay <= BandEnd();
  const double margin = count_ < 8 ? .1 : .03;
  const Seconds jitter = High() < .1 ? kJitter : 0;  // a slow device would be believed too much
  return High() <= 1 && InBand(delay) &&
         std::min(Least() * (1 - margin) - .002, Least() - jitter) <= delay &&
         delay <= std::max(Most() * (1 + margin) + .005, Most() + jitter);
}

bool Pace::IsPlausible(Seconds delay) const {
  constexpr size_t kFew = 4;
  if (count_ >= kFew) return InBand(delay);
  return std::min(.7 * Least() - .002, Least() - kJitter) <= delay &&
         delay <= 1.4 * Most() + kJitter + .005;
}

}  // namespace kxwan
