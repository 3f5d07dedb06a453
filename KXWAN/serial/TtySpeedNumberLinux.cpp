#include <KXWAN/serial/TtyPrivate.h>

// Alone in its file: the kernel's terminal record bears the names of the C library's.
#include <asm/termbits.h>
#include <sys/ioctl.h>

namespace kxwan {

int GetSpeedNumber(int fd, unsigned long* speed) {
  struct termios2 attributes = {};
  if (ioctl(fd, TCGETS2, &attributes) == -1) return -1;
  *speed = attributes.c_ispeed;
  return 0;
}

}  // namespace kxwan
