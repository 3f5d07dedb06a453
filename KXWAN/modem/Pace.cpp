#include <KXWAN/modem/PacePrivate.h>

#include <algorithm>

namespace kxwan {

void Pace::Learn(Seconds delay) {
  constexpr size_t kEnoughToDropOne = 8;
  delays_[next_] = delay;
  next_ = (next_ + 1) % kDelays;
  count_ = std::min(count_ + 1, kDelays);

  Seconds sorted[kDelays] = {};
  std::sort(sorted, std::copy_n(delays_, count_, sorted));
  least_ = sorted[0];
  low_ = sorted[count_ < kEnoughToDropOne ? 0 : 1];
  high_ = sorted[std::min(count_ * 3 / 4, count_ - 1)];
  most_ = sorted[count_ - 1];
}

bool Pace::Fits(Seconds delay) const {
  constexpr Seconds kPrompt = .15;
  if (!Known()) return delay < kPrompt;
  if (!HasBeat()) return high_ <= .5 && delay <= BandEnd();
  const double margin = count_ < 8 ? .1 : .03;
  const Seconds jitter = high_ < .1 ? kJitter : 0;  // a slow device would be believed too much
  return high_ <= 1 && InBand(delay) &&
         std::min(least_ * (1 - margin) - .002, least_ - jitter) <= delay &&
         delay <= std::max(most_ * (1 + margin) + .005, most_ + jitter);
}

bool Pace::IsPlausible(Seconds delay) const {
  constexpr size_t kFew = 4;
  if (count_ >= kFew) return InBand(delay);
  return std::min(.7 * least_ - .002, least_ - kJitter) <= delay &&
         delay <= 1.4 * most_ + kJitter + .005;
}

}  // namespace kxwan
