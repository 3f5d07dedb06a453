#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace kxmodel {

struct Range {
  double from = 0;
  double to = 0;
};

// Numbers that a seed decides, the same on every machine (splitmix64).
class Random {
 public:
  explicit Random(uint64_t seed) : state_(seed) {}

  uint64_t Next() {
    uint64_t mixed = (state_ += 0x9e3779b97f4a7c15u);
    mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111ebu;
    return mixed ^ (mixed >> 31);
  }

  double Share() { return static_cast<double>(Next() >> 11) * 0x1p-53; }
  bool Chance(double share) { return share > 0 && Share() < share; }
  size_t Below(size_t count) { return static_cast<size_t>(Next() % count); }
  double Within(Range range) {
    return range.to > range.from ? range.from + (range.to - range.from) * Share() : range.from;
  }

  // Every order of magnitude is as likely as another.
  double WithinOrders(Range range) {
    return range.to > range.from ? range.from * std::pow(range.to / range.from, Share())
                                 : range.from;
  }

 private:
  uint64_t state_;
};

}  // namespace kxmodel
