#include <poll.h>
#include <signal.h>
#include <simulator/call/FarEnd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

namespace kxsim {

bool FarEnd::Start() {
  Stop();
  if (command_.empty()) return true;
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return false;
  const std::optional<int> process = loop_.RunCommand(command_, ends[1]);
  close(ends[1]);
  if (!process) {
    close(ends[0]);
    return false;
  }
  socket_ = ends[0];
  process_ = *process;
  if (!loop_.Watch(socket_, POLLIN, [this](short ready) { OnReady(ready); })) return true;
  Stop();
  return false;
}

void FarEnd::Stop() {
  waiting_.clear();
  paused_ = false;
  if (socket_ < 0) return;
  loop_.Unwatch(socket_);
  close(socket_);
  socket_ = -1;
  kill(-process_, SIGHUP);
}

void FarEnd::Send(std::string_view bytes) {
  if (command_.empty()) {
    receive_(std::string(bytes));
    return;
  }
  if (socket_ < 0) return;
  waiting_ += bytes;
  Flush();
}

void FarEnd::Flush() {
  const ssize_t sent = send(socket_, waiting_.data(), waiting_.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  if (sent > 0) waiting_.erase(0, static_cast<size_t>(sent));
  if (sent < 0 && errno != EAGAIN && errno != EINTR) waiting_.clear();
  UpdateEvents();
}

void FarEnd::Pause(bool pause) {
  if (pause == paused_) return;
  paused_ = pause;
  UpdateEvents();
}

void FarEnd::UpdateEvents() {
  const int events = (paused_ ? 0 : POLLIN) | (waiting_.empty() ? 0 : POLLOUT);
  loop_.SetEvents(socket_, static_cast<short>(events));
}

void FarEnd::OnReady(short events) {
  if ((events & POLLOUT) != 0) Flush();
  if (paused_ || (events & POLLIN) == 0) return;
  char bytes[4096];
  const ssize_t count = recv(socket_, bytes, sizeof bytes, MSG_DONTWAIT);
  if (count > 0) {
    receive_(std::string(bytes, static_cast<size_t>(count)));
  } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
    Stop();
    ended_();
  }
}

}  // namespace kxsim
