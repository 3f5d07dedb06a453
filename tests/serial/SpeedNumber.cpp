#include <tests/serial/SpeedNumber.h>

// The system's own header and <termios.h> exclude each other.
#include <asm/termbits.h>
#include <sys/ioctl.h>

bool SetSpeedNumber(int fd, unsigned speed) {
  termios2 settings;
  if (ioctl(fd, TCGETS2, &settings) != 0) return false;
  settings.c_cflag &= ~static_cast<tcflag_t>(CBAUD | CIBAUD);
  settings.c_cflag |= BOTHER;  // for both directions
  settings.c_ispeed = speed;
  settings.c_ospeed = speed;
  return ioctl(fd, TCSETS2, &settings) == 0;
}
