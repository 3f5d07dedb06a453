#include <fcntl.h>
#include <simulator/line/PseudoTerminal.h>
#include <simulator/line/TerminalSpeed.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace kxsim {

bool PseudoTerminal::Open(bool raw) {
  Close();
  master_ = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
  char path[128];
  if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0 ||
      ptsname_r(master_, path, sizeof path) != 0) {
    Close();
    return false;
  }
  slave_ = open(path, O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (slave_ < 0) {
    Close();
    return false;
  }
  path_ = path;
  termios settings;
  if (raw && tcgetattr(slave_, &settings) == 0) {
    cfmakeraw(&settings);
    tcsetattr(slave_, TCSANOW, &settings);
  }
  return true;
}

void PseudoTerminal::Close() {
  if (master_ >= 0) close(master_);
  if (slave_ >= 0) close(slave_);
  master_ = slave_ = -1;
}

int PseudoTerminal::HostSpeed() const { return TerminalSpeed(master_); }

bool PseudoTerminal::HostEchoes() const {
  termios settings;
  return tcgetattr(master_, &settings) == 0 && (settings.c_lflag & ECHO) != 0;
}

void PseudoTerminal::ForgetHost() const {
  tcflush(slave_, TCIFLUSH);
  ioctl(slave_, TIOCNXCL);
}

}  // namespace kxsim
