#include <KXWAN/serial/LineSpeedPrivate.h>

#include <cerrno>

namespace kxwan {

// The record holds plain numbers here, and the driver judges them when they are set.
int SetLineSpeed(struct termios& attributes, unsigned long speed) {
  if (speed == 0) {
    errno = EINVAL;
    return -1;
  }
  return cfsetspeed(&attributes, static_cast<speed_t>(speed));
}

int GetLineSpeed(int fd, unsigned long* speed) {
  struct termios attributes = {};
  if (tcgetattr(fd, &attributes) == -1) return -1;
  *speed = cfgetispeed(&attributes);
  return 0;
}

}  // namespace kxwan
