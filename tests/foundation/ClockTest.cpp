#include <KXWAN/foundation/ClockPrivate.h>
#include <gtest/gtest.h>

#include <cmath>

TEST(Clock, TurnsTicksIntoMilliseconds) {
  const struct {
    double ticks;
    uint32_t milliseconds;
  } cases[] = {
      {0, 0},
      {1, 16},
      {6, 99},
      {60, 999},

      {-1, 0},
      {NAN, 0},
      {-1e300, 0},
      {1e300, UINT32_MAX},
      {257000001, 4283316216},
      {258e6, UINT32_MAX},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(kxwan::MillisecondsOfTicks(row.ticks), row.milliseconds) << row.ticks;
  }
}

TEST(Clock, CountsWholeTicks) {
  const double ticks = kxwan::TickCount();
  EXPECT_EQ(ticks, std::floor(ticks));
  EXPECT_GE(kxwan::TickCount(), ticks);
}
