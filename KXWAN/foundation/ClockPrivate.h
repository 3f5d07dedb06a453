#pragma once

#include <KXWAN/foundation/Clock.h>

#include <chrono>
#include <cstdint>

namespace kxwan {

// Ticks of 1/60 s of the system's monotonic clock, as a count with a fraction cut off.
double TickCount();

// Ticks in milliseconds, clamped to 32 bits and truncated.
uint32_t MillisecondsOfTicks(double ticks);

// The engine's millisecond clock: MillisecondsOfTicks(TickCount()).
uint32_t Milliseconds();

// Sleeps for the whole time, whatever signals come.
void WaitFully(std::chrono::milliseconds time);

}  // namespace kxwan
