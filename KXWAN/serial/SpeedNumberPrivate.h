#pragma once

namespace kxwan {

// Stores the input speed of a tty in bits per second as Linux keeps it beside the speed's code.
// Gives 0, or -1 with the system's error.
int GetSpeedNumber(int fd, unsigned long* speed);

}  // namespace kxwan
