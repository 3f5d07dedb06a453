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
      {90, 1499},
      {-1, 0},
      {NAN, 0},
      {-1e300, 0},
      {1e300, UINT32_MAX},
      {257000001, 4283316216},  // still counted
      {258e6, UINT32_MAX},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(kxwan::MillisecondsOfTicks(row.ticks), row.milliseconds) << row.ticks;
  }
}

TEST(Clock, CountsWholeTicksForward) {
  const double before = kxwan::TickCount();
  const uint32_t milliseconds = kxwan::Milliseconds();
  const double after = kxwan::TickCount();
  EXPECT_EQ(before, std::floor(before));
  EXPECT_GT(before, 0);
  EXPECT_GE(milliseconds, kxwan::MillisecondsOfTicks(before));
  EXPECT_LE(milliseconds, kxwan::MillisecondsOfTicks(after));
}
