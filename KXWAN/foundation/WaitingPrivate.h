#pragma once

#include <chrono>

namespace kxwan {

// Sleeps for the whole time, whatever signals come.
void WaitFully(std::chrono::milliseconds time);

}  // namespace kxwan
