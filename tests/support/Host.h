#pragma once

#include <fcntl.h>
#include <poll.h>
#include <profile/Profile.h>
#include <termios.h>
#include <unistd.h>

#include <cstddef>
#include <string>

// The host's end of a terminal, by nothing but the system's own calls.
class Host {
 public:
  explicit Host(const std::string& path, speed_t speed = B19200)
      : terminal_(open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    termios settings;
    if (tcgetattr(terminal_, &settings) != 0) return;
    cfmakeraw(&settings);
    cfsetspeed(&settings, speed);
    tcsetattr(terminal_, TCSANOW, &settings);
  }
  ~Host() { Close(); }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  void Close() {
    if (terminal_ >= 0) close(terminal_);
    terminal_ = -1;
  }

  void SetSpeed(speed_t speed) {
    termios settings;
    tcgetattr(terminal_, &settings);
    cfsetspeed(&settings, speed);
    tcsetattr(terminal_, TCSANOW, &settings);
  }

  bool Send(const std::string& bytes) {
    return write(terminal_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
  }

  // Reads so many bytes; fewer when no more come within the time or the line is hung up.
  std::string Read(size_t count, int waitMs = 3000) {
    std::string bytes;
    pollfd ready = {terminal_, POLLIN, 0};
    while (bytes.size() < count && poll(&ready, 1, waitMs) > 0) {
      char buffer[4096];
      const ssize_t got = read(terminal_, buffer, std::min(sizeof buffer, count - bytes.size()));
      if (got <= 0) break;
      bytes.append(buffer, static_cast<size_t>(got));
    }
    return bytes;
  }

  // Sends bytes and reads as many as are expected. One that is sent too much or not at all shows
  // in the answer to the next question.
  std::string Ask(const std::string& bytes, const std::string& expected) {
    Send(bytes);
    return Read(expected.size());
  }

  // What comes up to and including a text.
  std::string ReadTo(const std::string& end) {
    std::string bytes;
    while (!bytes.ends_with(end)) {
      const std::string byte = Read(1);
      if (byte.empty()) break;
      bytes += byte;
    }
    return bytes;
  }

 private:
  int terminal_;
};

// A profile from its text, or a built-in one by its name; the test fails when it is none.
kxsim::Profile ProfileOf(const std::string& toml);
kxsim::Profile ProfileNamed(const std::string& name);
