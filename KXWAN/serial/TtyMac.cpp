#include <KXWAN/serial/TtyPrivate.h>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>

namespace kxwan {

bool IsExclusive(int) { return false; }

// The last close of a descriptor that does not block drops what waits.
void CloseUnsent(int fd) {
  fcntl(fd, F_SETFL, O_NONBLOCK);
  close(fd);
}

// The record holds plain numbers here, and the driver judges them when they are set.
int SetTtySpeed(struct termios& attributes, unsigned long speed) {
  if (speed == 0) {
    errno = EINVAL;
    return -1;
  }
  return cfsetspeed(&attributes, static_cast<speed_t>(speed));
}

int GetTtySpeed(int fd, unsigned long* speed) {
  struct termios attributes = {};
  if (tcgetattr(fd, &attributes) == -1) return -1;
  *speed = cfgetispeed(&attributes);
  return 0;
}

}  // namespace kxwan
