// The system's own header and <termios.h> exclude each other.
#include <asm/termbits.h>
#include <simulator/line/TerminalSpeed.h>
#include <sys/ioctl.h>

namespace kxsim {
namespace {

constexpr int kSpeedOfHangUp = 9600;

}  // namespace

int TerminalSpeed(int terminal) {
  // The plain record holds a constant for the usual speeds only; this one holds the number.
  termios2 settings;
  if (ioctl(terminal, TCGETS2, &settings) != 0) return 0;
  // A UART of this system drops DTR at speed 0 and goes on at 9600; some programs use it like that.
  return settings.c_ospeed == 0 ? kSpeedOfHangUp : static_cast<int>(settings.c_ospeed);
}

}  // namespace kxsim
