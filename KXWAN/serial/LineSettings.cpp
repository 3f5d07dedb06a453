#include <KXWAN/foundation/DebugLog.h>
#include <KXWAN/serial/KxSerial.h>
#include <KXWAN/serial/SystemCallPrivate.h>
#include <KXWAN/serial/TtyPrivate.h>
#include <sys/ioctl.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

bool SameSpeeds(const struct termios& one, const struct termios& other) {
  return cfgetispeed(&one) == cfgetispeed(&other) && cfgetospeed(&one) == cfgetospeed(&other);
}

}  // namespace

int KxSerial::SetDataFormat(unsigned long speed, E_PARITY, E_BYTESIZE, E_STOPBITS) {
  struct termios before = {};
  struct termios attributes = {};
  bool succeeded = false;
  if (tcgetattr(fd, &before) == -1) {
    const int error = errno;
    KXOutputDebug("KxSerial::SetDataFormat() - Error getting tty attributes - %s(%d).\n",
                  std::strerror(error), error);
  } else {
    attributes = before;
    succeeded = kxwan::SetTtySpeed(attributes, speed) == 0;
    if (!succeeded) {
      const int error = errno;
      KXOutputDebug("KxSerial::SetDataFormat() - Error cfsetspeed - %s(%d).\n",
                    std::strerror(error), error);
    }
  }
  // Deliberate: attempted after a failure too, so that the log tells whether the line can be set.
  if (kxwan::SetAttributes(fd, attributes) == -1) {
    const int error = errno;
    KXOutputDebug("KxSerial::SetDataFormat(%d) - Error setting tty attributes - %s(%d).\n",
                  static_cast<int>(speed), std::strerror(error), error);
    return 0;
  }
  if (succeeded && !SameSpeeds(before, attributes)) ++lineGeneration;
  return succeeded ? 1 : 0;
}

int KxSerial::GetDataFormat(unsigned long* speed) {
  if (kxwan::GetTtySpeed(fd, speed) == -1) {
    const int error = errno;
    KXOutputDebug("KxSerial::GetDataFormat() - Error getting tty attributes - %s(%d).\n",
                  std::strerror(error), error);
    return 0;
  }
  return 1;
}

int KxSerial::SetFlowControl(E_FLOWCONTROL mode) {
  struct termios attributes = {};
  if (tcgetattr(fd, &attributes) == -1) {
    const int error = errno;
    return std::fprintf(stderr,
                        "KxSerial::SetFlowControl() - Error getting tty attributes - %s(%d).\n",
                        std::strerror(error), error);
  }
  if (mode != E_FLOWCONTROL_NONE && mode != E_FLOWCONTROL_HARDWARE) return 1;
  const auto handshake = static_cast<tcflag_t>(CRTSCTS);
  attributes.c_cflag &= ~handshake;
  if (mode == E_FLOWCONTROL_HARDWARE) attributes.c_cflag |= handshake;
  if (kxwan::SetAttributes(fd, attributes) == -1) {
    const int error = errno;
    return std::fprintf(stderr,
                        "KxSerial::SetFlowControl() - Error setting tty attributes - %s(%d).\n",
                        std::strerror(error), error);
  }
  return 1;
}

int KxSerial::SetModemData() {
  SetDataFormat(19200, E_PARITY_NONE, E_BYTESIZE_8, E_STOPBITS_1);
  return SetFlowControl(E_FLOWCONTROL_HARDWARE);
}

int KxSerial::SetDTR(signed char on) {
  // Deliberate: only the call that sets the lines decides; a driver that cannot read them may still
  // set one.
  int lines = 0;
  ioctl(fd, TIOCMGET, &lines);
  lines = on != 0 ? lines | TIOCM_DTR : lines & ~TIOCM_DTR;
  return ioctl(fd, TIOCMSET, &lines);
}
