#pragma once

#include <termios.h>

namespace kxwan {

// Line speeds as plain bits per second in a terminal record. Both give 0, or -1 with errno EINVAL
// for a speed that the system does not know; then nothing is stored.

// Sets the input and the output speed. 0 is no speed: it would hang the line up.
int SetLineSpeed(struct termios& attributes, unsigned long speed);

// Stores the input speed.
int GetLineSpeed(const struct termios& attributes, unsigned long* speed);

}  // namespace kxwan
