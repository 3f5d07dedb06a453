#include <poll.h>
#include <signal.h>
#include <simulator/call/FarEnd.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace kxsim {
namespace {

// Collects a process when it ends, whoever still knows of it then.
void Reap(Loop& loop, pid_t process) {
  const int descriptor = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
  if (descriptor < 0) return;
  loop.Watch(descriptor, POLLIN, [&loop, process, descriptor](short) {
    waitpid(process, nullptr, WNOHANG);
    loop.Unwatch(descriptor);
    close(descriptor);
  });
}

}  // namespace

bool FarEnd::Start() {
  Stop();
  if (command_.empty()) return true;
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return false;
  const bool started = Spawn(ends[1]);
  close(ends[1]);
  if (!started) {
    close(ends[0]);
    return false;
  }
  socket_ = ends[0];
  Reap(loop_, process_);
  Watch();
  return true;
}

bool FarEnd::Spawn(int input) {
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_init(&actions);
  posix_spawnattr_init(&attributes);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, input, STDOUT_FILENO);
  // A group of its own, so that all of it can be told to go.
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
  std::string command = command_;
  std::string shell = "sh";
  std::string option = "-c";
  char* const arguments[] = {shell.data(), option.data(), command.data(), nullptr};
  const int failed = posix_spawn(&process_, "/bin/sh", &actions, &attributes, arguments, environ);
  posix_spawn_file_actions_destroy(&actions);
  posix_spawnattr_destroy(&attributes);
  return failed == 0;
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
  Watch();
}

void FarEnd::Pause(bool pause) {
  if (pause == paused_) return;
  paused_ = pause;
  Watch();
}

void FarEnd::Watch() {
  if (socket_ < 0) return;
  const int events = (paused_ ? 0 : POLLIN) | (waiting_.empty() ? 0 : POLLOUT);
  // An end that has closed would be reported even when nothing is asked for.
  if (events == 0) {
    loop_.Unwatch(socket_);
  } else {
    loop_.Watch(socket_, static_cast<short>(events), [this](short ready) { OnReady(ready); });
  }
}

void FarEnd::OnReady(short events) {
  if ((events & POLLOUT) != 0) Flush();
  if (paused_ || (events & (POLLIN | POLLHUP | POLLERR)) == 0) return;
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
