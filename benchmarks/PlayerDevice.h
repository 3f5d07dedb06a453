#pragma once

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <string>
#include <thread>
#include <utility>
#include <vector>

// The quickest device there can be: a thread that answers every command line on a pseudo-terminal
// at once with bytes that were made beforehand.
class PlayerDevice {
 public:
  // What is sent for each command line (without its "\r"), in writes of pieceSize bytes (0: one
  // write). A command that is not listed gets fallback.
  explicit PlayerDevice(std::map<std::string, std::string> answers,
                        std::string fallback = "\r\nERROR\r\n", size_t pieceSize = 0)
      : answers_(std::move(answers)), fallback_(std::move(fallback)), pieceSize_(pieceSize) {
    master_ = posix_openpt(O_RDWR | O_NOCTTY);
    grantpt(master_);
    unlockpt(master_);
    path_ = ptsname(master_);
    slave_ = open(path_.c_str(), O_RDWR | O_NOCTTY);  // the line outlives a host that closes it
    if (pipe(stop_) == 0) thread_ = std::thread([this] { Run(); });
  }

  ~PlayerDevice() {
    close(stop_[1]);
    thread_.join();
    for (const int descriptor : {stop_[0], slave_, master_}) close(descriptor);
  }

  const std::string& Path() const { return path_; }

  // The commands that came since the last call. Call it while the device is idle.
  std::vector<std::string> TakeCommands() { return std::exchange(commands_, {}); }
  void Record(bool on) { recording_ = on; }

 private:
  void Run() {
    std::string line;
    for (;;) {
      struct pollfd watched[2] = {{master_, POLLIN, 0}, {stop_[0], POLLIN, 0}};
      poll(watched, 2, -1);
      if (watched[1].revents != 0) return;
      char bytes[256];
      const ssize_t count = read(master_, bytes, sizeof bytes);
      for (ssize_t i = 0; i < count; ++i) {
        if (bytes[i] != '\r') {
          line += bytes[i];
          continue;
        }
        Answer(line);
        line.clear();
      }
    }
  }

  void Answer(const std::string& line) {
    if (recording_) commands_.push_back(line);
    const auto row = answers_.find(line);
    const std::string& answer = row == answers_.end() ? fallback_ : row->second;
    const size_t piece = pieceSize_ == 0 ? answer.size() : pieceSize_;
    for (size_t sent = 0; sent < answer.size();) {
      const ssize_t count =
          write(master_, answer.data() + sent, std::min(piece, answer.size() - sent));
      if (count <= 0) return;
      sent += static_cast<size_t>(count);
    }
  }

  std::map<std::string, std::string> answers_;
  std::string fallback_;
  size_t pieceSize_;
  std::string path_;
  int master_ = -1;
  int slave_ = -1;
  int stop_[2] = {-1, -1};
  bool recording_ = true;
  std::vector<std::string> commands_;
  std::thread thread_;
};

// One exchange without the library: write, poll, read, until the final result stands there. What
// every cost of the library is compared with.
inline void RawExchange(int fd, const std::string& command) {
  const std::string line = command + "\r";
  if (write(fd, line.data(), line.size()) < 0) return;
  std::string reply;
  const auto ends = [&](const char* with) {
    const std::string_view end = with;
    return reply.size() >= end.size() &&
           reply.compare(reply.size() - end.size(), end.npos, end) == 0;
  };
  while (!ends("\r\nOK\r\n") && !ends("\r\nERROR\r\n")) {
    struct pollfd watched = {fd, POLLIN, 0};
    if (poll(&watched, 1, 1500) != 1) return;
    char bytes[4096];
    const ssize_t count = read(fd, bytes, sizeof bytes);
    if (count <= 0) return;
    reply.append(bytes, static_cast<size_t>(count));
  }
}

inline double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<long>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// Seconds that a clock counts over a call.
template <typename Call>
double SecondsOn(clockid_t clock, Call call) {
  timespec before = {};
  timespec after = {};
  clock_gettime(clock, &before);
  call();
  clock_gettime(clock, &after);
  return static_cast<double>(after.tv_sec - before.tv_sec) +
         static_cast<double>(after.tv_nsec - before.tv_nsec) / 1e9;
}
