#pragma once

#include <algorithm>
#include <iterator>

namespace kxsim {

// Whether this is a speed that a serial line usually has, in bits per second.
constexpr bool IsUsualSpeed(int bitsPerSecond) {
  constexpr int kSpeeds[] = {300,   600,   1200,   2400,   4800,   9600,  19200,
                             38400, 57600, 115200, 230400, 460800, 921600};
  return std::find(std::begin(kSpeeds), std::end(kSpeeds), bitsPerSecond) != std::end(kSpeeds);
}

}  // namespace kxsim
