#pragma once

#include <KXWAN/info/Battery.h>

#include <cstdint>
#include <string_view>

namespace kxwan {

// The level that an answer to +CBC reports, never negative. With a maxStrength above 0 the device
// counts from 0 to maxStrength, and the level is rescaled to percent.
int32_t BatteryLevelOf(std::string_view answer, int32_t maxStrength);

// What the value of a +CBC line tells.
BatteryReading BatteryReadingOf(std::string_view value);

}  // namespace kxwan
