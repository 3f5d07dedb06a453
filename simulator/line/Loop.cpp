#include <poll.h>
#include <simulator/line/ChildSignal.h>
#include <simulator/line/Loop.h>
#include <unistd.h>
#include <uv.h>

#include <algorithm>
#include <utility>

namespace kxsim {
namespace {

// The library counts whole milliseconds of the same clock. Rounded up: no timer is early.
uint64_t Milliseconds(Loop::Clock::time_point when) {
  const auto time = std::chrono::ceil<std::chrono::milliseconds>(when.time_since_epoch());
  return static_cast<uint64_t>(time.count());
}

int LibraryEvents(short events) {
  return ((events & POLLIN) != 0 ? UV_READABLE : 0) | ((events & POLLOUT) != 0 ? UV_WRITABLE : 0);
}

short SystemEvents(int events) {
  const int result =
      ((events & UV_READABLE) != 0 ? POLLIN : 0) | ((events & UV_WRITABLE) != 0 ? POLLOUT : 0);
  return static_cast<short>(result);
}

// The library may look at a handle until it says that it has closed it.
template <typename Owner>
void CloseAndDelete(Owner* owner) {
  uv_close(reinterpret_cast<uv_handle_t*>(&owner->handle),
           [](uv_handle_t* closed) { delete static_cast<Owner*>(closed->data); });
}

}  // namespace

struct Loop::Library {
  uv_loop_t loop = {};
  uv_async_t wakeUp = {};
};

struct Loop::Watcher {
  uv_poll_t handle = {};
  Ready ready = {};
  short events = 0;

  void Listen() {
    if (events == 0) {
      uv_poll_stop(&handle);
    } else {
      uv_poll_start(&handle, LibraryEvents(events), OnEvents);
    }
  }

  static void OnEvents(uv_poll_t* poll, int failed, int events) {
    auto* own = static_cast<Watcher*>(poll->data);
    // The library stops listening at an error. Who reads finds out which it is.
    if (failed != 0) own->Listen();
    own->ready(failed != 0 ? POLLIN : SystemEvents(events));
  }
};

struct Loop::Timer {
  uv_timer_t handle = {};
  Loop* loop = nullptr;
  TimerKey key = 0;
  Callback callback = {};
};

struct Loop::Process {
  uv_process_t handle = {};
  Loop* loop = nullptr;
};

Loop::Loop() : library_(std::make_unique<Library>()) {
  int failed = uv_loop_init(&library_->loop);
  if (failed == 0) {
    failed = uv_async_init(&library_->loop, &library_->wakeUp, [](uv_async_t* wakeUp) {
      static_cast<Loop*>(wakeUp->data)->OnWakeUp();
    });
    library_->wakeUp.data = this;
    if (failed != 0) uv_loop_close(&library_->loop);
  }
  if (failed != 0) refusal_ = std::string("no event loop: ") + uv_strerror(failed);
}

Loop::~Loop() {
  if (refusal_) return;
  for (const auto& [descriptor, watcher] : watchers_) CloseAndDelete(watcher);
  for (const auto& [key, timer] : timers_) CloseAndDelete(timer);
  while (!processes_.empty()) OnExit(processes_.begin()->first);
  uv_close(reinterpret_cast<uv_handle_t*>(&library_->wakeUp), nullptr);
  uv_run(&library_->loop, UV_RUN_DEFAULT);
  uv_loop_close(&library_->loop);
}

std::optional<std::string> Loop::Watch(int descriptor, short events, Ready ready) {
  if (refusal_) return refusal_;
  Unwatch(descriptor);
  auto watcher = std::make_unique<Watcher>();
  const int failed = uv_poll_init(&library_->loop, &watcher->handle, descriptor);
  if (failed != 0) return std::string("cannot be watched: ") + uv_strerror(failed);
  watcher->handle.data = watcher.get();
  watcher->ready = std::move(ready);
  watcher->events = events;
  watcher->Listen();
  watchers_[descriptor] = watcher.release();
  return std::nullopt;
}

void Loop::SetEvents(int descriptor, short events) {
  const auto found = watchers_.find(descriptor);
  if (found == watchers_.end() || found->second->events == events) return;
  found->second->events = events;
  found->second->Listen();
}

void Loop::Unwatch(int descriptor) {
  const auto found = watchers_.find(descriptor);
  if (found == watchers_.end()) return;
  CloseAndDelete(found->second);
  watchers_.erase(found);
}

Loop::TimerKey Loop::At(Clock::time_point when, Callback callback) {
  if (refusal_) return 0;
  auto* timer = new Timer{.loop = this, .key = ++lastTimer_, .callback = std::move(callback)};
  uv_timer_init(&library_->loop, &timer->handle);
  timer->handle.data = timer;
  const uint64_t now = uv_now(&library_->loop);
  const uint64_t due = std::max(Milliseconds(when), now);
  uv_timer_start(
      &timer->handle,
      [](uv_timer_t* handle) {
        const auto* own = static_cast<Timer*>(handle->data);
        own->loop->OnTimer(own->key);
      },
      due - now, 0);
  timers_[timer->key] = timer;
  return timer->key;
}

void Loop::Cancel(TimerKey key) {
  const auto found = timers_.find(key);
  if (found == timers_.end()) return;
  CloseAndDelete(found->second);
  timers_.erase(found);
}

void Loop::OnTimer(TimerKey key) {
  const Callback callback = std::move(timers_[key]->callback);
  Cancel(key);
  callback();
}

std::optional<int> Loop::RunCommand(std::string command, int descriptor) {
  if (refusal_) return std::nullopt;
  std::string shell = "sh";
  std::string option = "-c";
  char* arguments[] = {shell.data(), option.data(), command.data(), nullptr};
  uv_stdio_container_t streams[3] = {};
  for (uv_stdio_container_t& stream : streams) stream.flags = UV_INHERIT_FD;
  streams[STDIN_FILENO].data.fd = streams[STDOUT_FILENO].data.fd = descriptor;
  streams[STDERR_FILENO].data.fd = STDERR_FILENO;
  uv_process_options_t options = {};
  options.file = "/bin/sh";
  options.args = arguments;
  options.stdio = streams;
  options.stdio_count = 3;
  options.flags = UV_PROCESS_DETACHED;
  options.exit_cb = [](uv_process_t* handle, int64_t, int) {
    static_cast<Process*>(handle->data)->loop->OnExit(handle->pid);
  };
  auto* process = new Process{.loop = this};
  ChildSignal signal;
  const int failed = uv_spawn(&library_->loop, &process->handle, &options);
  process->handle.data = process;
  if (failed != 0) {
    CloseAndDelete(process);
    return std::nullopt;
  }
  signal.Started();
  processes_[process->handle.pid] = process;
  return process->handle.pid;
}

void Loop::OnExit(int process) {
  ChildSignal signal;
  CloseAndDelete(processes_[process]);
  processes_.erase(process);
  signal.Forgotten();
}

void Loop::Post(Callback callback) {
  if (refusal_) return;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    posted_.push_back(std::move(callback));
  }
  uv_async_send(&library_->wakeUp);
}

void Loop::Stop() {
  stop_ = true;
  if (!refusal_) uv_async_send(&library_->wakeUp);
}

void Loop::Run() {
  if (!refusal_) uv_run(&library_->loop, UV_RUN_DEFAULT);
}

void Loop::OnWakeUp() {
  std::vector<Callback> posted;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    posted.swap(posted_);
  }
  for (const Callback& callback : posted) callback();
  if (stop_.exchange(false)) uv_stop(&library_->loop);
}

}  // namespace kxsim
