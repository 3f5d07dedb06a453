#include <KXWAN/foundation/Clock.h>

#include <KXWAN/foundation/ClockPrivate.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <thread>

namespace kxwan {

double TickCount() {
  constexpr int64_t kTicksPerSecond = 60;
  constexpr int64_t kNanosecondsPerSecond = 1000000000;
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  const int64_t fraction = now.tv_nsec * kTicksPerSecond / kNanosecondsPerSecond;
  return static_cast<double>(now.tv_sec * kTicksPerSecond + fraction);
}

uint32_t MillisecondsOfTicks(double ticks) {
  // Deliberate: 16.6666 and not 1000/60. The time of the last response is told in such
  // milliseconds.
  const double milliseconds = ticks * 16.6666;
  if (std::isnan(milliseconds)) return 0;
  return static_cast<uint32_t>(std::clamp(milliseconds, 0.0, 4294967295.0));
}

uint32_t Milliseconds() { return MillisecondsOfTicks(TickCount()); }

void WaitFully(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

}  // namespace kxwan

int WaitMilliSecond(unsigned long ms) {
  // Deliberate: the product wraps in 32 bits.
  return usleep(static_cast<uint32_t>(ms) * UINT32_C(1000));
}
