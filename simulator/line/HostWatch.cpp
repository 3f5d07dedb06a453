#include <poll.h>
#include <simulator/line/HostWatch.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

namespace kxsim {

HostWatch::HostWatch(Loop& loop)
    : loop_(loop), descriptor_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
  if (descriptor_ >= 0) loop_.Watch(descriptor_, POLLIN, [this](short) { Check(); });
}

HostWatch::~HostWatch() {
  if (descriptor_ < 0) return;
  loop_.Unwatch(descriptor_);
  close(descriptor_);
}

int HostWatch::Add(const std::string& path, std::function<void()> gone) {
  constexpr uint32_t kEvents = IN_OPEN | IN_CLOSE;
  // An event like the last one unread is dropped by the system, and two opens would count as one.
  // The folder tells of each open as well, so that no two events in a row are alike.
  inotify_add_watch(descriptor_, path.substr(0, path.rfind('/')).c_str(), kEvents);
  const int watch = inotify_add_watch(descriptor_, path.c_str(), kEvents);
  if (watch >= 0) terminals_[watch].gone = std::move(gone);
  return watch;
}

void HostWatch::Forget(int watch) {
  if (terminals_.erase(watch) > 0) inotify_rm_watch(descriptor_, watch);
}

void HostWatch::Check() {
  alignas(inotify_event) char buffer[4096];
  ssize_t count = 0;
  while ((count = read(descriptor_, buffer, sizeof buffer)) > 0) {
    for (ssize_t offset = 0; offset < count;) {
      inotify_event event;
      memcpy(&event, buffer + offset, sizeof event);
      offset += static_cast<ssize_t>(sizeof event + event.len);
      const auto found = terminals_.find(event.wd);
      if (found == terminals_.end()) continue;
      Terminal& terminal = found->second;
      if ((event.mask & IN_OPEN) != 0) ++terminal.opened;
      if ((event.mask & IN_CLOSE) == 0) continue;
      terminal.opened = std::max(terminal.opened - 1, 0);
      terminal.closed |= terminal.opened == 0;
    }
  }
  std::vector<std::function<void()>> calls;
  for (auto& [watch, terminal] : terminals_) {
    if (std::exchange(terminal.closed, false)) calls.push_back(terminal.gone);
  }
  for (const std::function<void()>& call : calls) call();
}

}  // namespace kxsim
