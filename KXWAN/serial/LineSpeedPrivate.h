#pragma once

#include <termios.h>

namespace kxwan {

// Line speeds as plain bits per second.

// Sets the input and the output speed in a terminal record. Gives 0, or -1 with errno EINVAL for a
// speed that the system does not know; then nothing is stored. 0 is no speed: it would hang the
// line up.
int SetLineSpeed(struct termios& attributes, unsigned long speed);

// Stores the input speed of a tty: any that it may have, 0 for a line that is hung up. Gives 0, or
// -1 with the system's error; then nothing is stored.
int GetLineSpeed(int fd, unsigned long* speed);

}  // namespace kxwan
