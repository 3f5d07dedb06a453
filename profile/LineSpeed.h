#pragma once

namespace kxsim {

// The speed that is set on a terminal, in bits per second; 0 when it cannot be read.
int LineSpeedOf(int terminal);

// Whether this is a speed that a serial line usually has.
bool IsLineSpeed(int bitsPerSecond);

}  // namespace kxsim
