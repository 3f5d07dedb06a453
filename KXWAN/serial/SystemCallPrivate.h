#pragma once

#include <termios.h>

#include <cerrno>

namespace kxwan {

// Makes a system call again for as long as a signal interrupts it. For calls that do not wait for
// the line: a wait that starts anew at every signal might never end.
template <typename Call>
auto Uninterrupted(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

// tcsetattr with immediate effect.
inline int SetAttributes(int fd, const struct termios& attributes) {
  return Uninterrupted([&] { return tcsetattr(fd, TCSANOW, &attributes); });
}

}  // namespace kxwan
