#pragma once

struct termios;  // <termios.h> and the kernel's own header cannot be read together

namespace kxwan {

// What each system does with its ttys in its own way.

// Whether somebody has taken the tty for exclusive use. False where the system does not tell.
bool IsExclusive(int fd);

// Closes a tty with output that its device does not take, without waiting for it. The output is
// lost.
void CloseUnsent(int fd);

// Line speeds are plain bits per second.

// Sets the input and the output speed in a terminal record. Gives 0, or -1 with errno EINVAL for a
// speed that the system does not know; then nothing is stored. 0 is no speed: it would hang the
// line up.
int SetTtySpeed(struct termios& attributes, unsigned long speed);

// Stores the input speed of a tty: any that it may have, 0 for a line that is hung up. Gives 0, or
// -1 with the system's error; then nothing is stored.
int GetTtySpeed(int fd, unsigned long* speed);

// Stores the input speed as Linux keeps it, as a number, beside the speed's code. Gives 0, or -1
// with the system's error. Linux only.
int GetSpeedNumber(int fd, unsigned long* speed);

}  // namespace kxwan
