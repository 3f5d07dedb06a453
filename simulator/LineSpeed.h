#pragma once

#include <termios.h>

namespace kxsim {

// Bits per second behind a constant of the terminal interface; 0 for a hang-up or an unknown one.
int BitsPerSecond(speed_t constant);

// Whether this is a speed that a serial line can have.
bool IsLineSpeed(int bitsPerSecond);

}  // namespace kxsim
