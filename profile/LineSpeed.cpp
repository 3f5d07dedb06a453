// The system's own header and <termios.h> exclude each other.
#include <asm/termbits.h>
#include <profile/LineSpeed.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <iterator>

namespace kxsim {
namespace {

constexpr int kSpeeds[] = {300,   600,   1200,   2400,   4800,   9600,  19200,
                           38400, 57600, 115200, 230400, 460800, 921600};
constexpr int kSpeedOfHangUp = 9600;

}  // namespace

int LineSpeedOf(int terminal) {
  // The plain record holds a constant for the usual speeds only; this one holds the number.
  termios2 settings;
  if (ioctl(terminal, TCGETS2, &settings) != 0) return 0;
  // A UART of this system drops DTR at speed 0 and goes on at 9600; some programs use it like that.
  return settings.c_ospeed == 0 ? kSpeedOfHangUp : static_cast<int>(settings.c_ospeed);
}

bool IsLineSpeed(int bitsPerSecond) {
  return std::find(std::begin(kSpeeds), std::end(kSpeeds), bitsPerSecond) != std::end(kSpeeds);
}

}  // namespace kxsim
