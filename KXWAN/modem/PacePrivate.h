#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace kxwan {

// Times are seconds of any clock that does not go backwards, and so are their differences.
using Seconds = double;

// Milliseconds are counted in 32 bits wherever an operation takes them.
constexpr Seconds SecondsOf(unsigned long milliseconds) {
  return static_cast<uint32_t>(milliseconds) / 1000.;
}

// How soon a device answers when nothing else is outstanding: what its last such delays tell.
class Pace {
 public:
  void Learn(Seconds delay);

  bool Known() const { return count_ > 0; }

  // The usual delays: from the shortest, one lucky one aside, to what three of four stay below.
  Seconds Low() const { return sorted_[count_ < kEnoughToDropOne ? 0 : 1]; }
  Seconds High() const { return sorted_[count_ * 3 / 4]; }

  // A device whose delays differ by more than this has no beat that an answer could be told by.
  bool HasBeat() const { return Known() && BandEnd() - BandBegin() < kWidestBand; }
  bool InBand(Seconds delay) const {
    return HasBeat() && BandBegin() <= delay && delay <= BandEnd();
  }

  // Whether this delay is one that the device may have, as far as is known of it.
  bool IsPlausible(Seconds delay) const;

  // Whether a single answer after this delay may be believed although others are outstanding.
  bool Fits(Seconds delay) const;

  // How long the line stays quiet before a device has nothing more to say.
  Seconds Quiet(Seconds whenUnknown) const { return Known() ? 1.5 * High() + .02 : whenUnknown; }

 private:
  static constexpr size_t kDelays = 16;
  static constexpr size_t kEnoughToDropOne = 8;
  static constexpr Seconds kWidestBand = .36;

  // What a busy host adds to one delay and not to another.
  static constexpr Seconds kJitter = .03;

  Seconds BandBegin() const { return std::min(.85 * Low() - .002, Low() - kJitter); }
  Seconds BandEnd() const { return std::max(1.15 * High() + .005, High() + kJitter); }

  Seconds Least() const { return sorted_[0]; }
  Seconds Most() const { return sorted_[count_ == 0 ? 0 : count_ - 1]; }

  Seconds delays_[kDelays] = {};  // a ring
  Seconds sorted_[kDelays] = {};  // the same
  size_t next_ = 0;
  size_t count_ = 0;
};

}  // namespace kxwan
