#pragma once

#include <simulator/line/Loop.h>

#include <functional>
#include <string>
#include <string_view>

namespace kxsim {

// Whom a data call reaches: a command with its standard input and output, or, without a command,
// an echo.
class FarEnd {
 public:
  using Receive = std::function<void(std::string bytes)>;

  FarEnd(Loop& loop, std::string command, Receive receive, Loop::Callback ended)
      : loop_(loop),
        command_(std::move(command)),
        receive_(std::move(receive)),
        ended_(std::move(ended)) {}
  ~FarEnd() { Stop(); }
  FarEnd(const FarEnd&) = delete;
  FarEnd& operator=(const FarEnd&) = delete;

  // False when the command cannot be started.
  bool Start();
  void Stop();
  void Send(std::string_view bytes);
  // Whether it can be sent more; what it is sent beyond that is kept.
  bool Ready() const { return waiting_.size() < kMostWaiting; }
  // Holds back what it says.
  void Pause(bool pause);

 private:
  static constexpr size_t kMostWaiting = 64 * 1024;

  void OnReady(short events);
  void Flush();
  void UpdateEvents();

  Loop& loop_;
  const std::string command_;
  const Receive receive_;
  const Loop::Callback ended_;
  int socket_ = -1;
  int process_ = -1;
  bool paused_ = false;
  std::string waiting_;
};

}  // namespace kxsim
