#include <fcntl.h>
#include <poll.h>
#include <simulator/line/Loop.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace kxsim {

Loop::Loop() {
  if (pipe2(wakeUp_, O_CLOEXEC | O_NONBLOCK) != 0) abort();
  Watch(wakeUp_[0], POLLIN, [this](short) { RunPosted(); });
}

Loop::~Loop() {
  close(wakeUp_[0]);
  close(wakeUp_[1]);
}

void Loop::Watch(int descriptor, short events, Ready ready) {
  watchers_[descriptor] = {events, ++counter_, std::move(ready)};
}

void Loop::SetEvents(int descriptor, short events) {
  const auto found = watchers_.find(descriptor);
  if (found != watchers_.end()) found->second.events = events;
}

void Loop::Unwatch(int descriptor) { watchers_.erase(descriptor); }

Loop::TimerKey Loop::At(Clock::time_point when, Callback callback) {
  const TimerKey key(when, ++counter_);
  timers_.emplace(key, std::move(callback));
  return key;
}

void Loop::Cancel(const TimerKey& key) { timers_.erase(key); }

void Loop::Post(Callback callback) {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    posted_.push_back(std::move(callback));
  }
  Wake();
}

void Loop::Stop() {
  stop_ = true;
  Wake();
}

void Loop::Wake() const {
  // A full pipe wakes the loop just as well.
  [[maybe_unused]] const ssize_t written = write(wakeUp_[1], "", 1);
}

void Loop::Run() {
  while (!stop_) {
    Wait();
    RunTimers();
  }
  stop_ = false;
}

void Loop::Wait() {
  std::vector<pollfd> descriptors;
  std::vector<uint64_t> generations;
  for (const auto& [descriptor, watcher] : watchers_) {
    descriptors.push_back({descriptor, watcher.events, 0});
    generations.push_back(watcher.generation);
  }
  timespec wait = {};
  if (!timers_.empty()) {
    using std::chrono::nanoseconds;
    const nanoseconds left = timers_.begin()->first.first - Clock::now();
    const auto count = std::max<nanoseconds::rep>(left.count(), 0);
    wait.tv_sec = static_cast<time_t>(count / 1'000'000'000);
    wait.tv_nsec = static_cast<long>(count % 1'000'000'000);
  }
  const int ready =
      ppoll(descriptors.data(), descriptors.size(), timers_.empty() ? nullptr : &wait, nullptr);
  if (ready <= 0) return;
  for (size_t i = 0; i < descriptors.size(); ++i) {
    if (descriptors[i].revents == 0) continue;
    // An earlier callback may have taken this one away, or put another in its place.
    const auto found = watchers_.find(descriptors[i].fd);
    if (found == watchers_.end() || found->second.generation != generations[i]) continue;
    const Ready callback = found->second.ready;
    callback(descriptors[i].revents);
  }
}

void Loop::RunTimers() {
  const Clock::time_point now = Clock::now();
  while (!timers_.empty() && timers_.begin()->first.first <= now) {
    const Callback callback = std::move(timers_.begin()->second);
    timers_.erase(timers_.begin());
    callback();
  }
}

void Loop::RunPosted() {
  char bytes[64];
  while (read(wakeUp_[0], bytes, sizeof bytes) > 0) {
  }
  std::vector<Callback> posted;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    posted.swap(posted_);
  }
  for (const Callback& callback : posted) callback();
}

}  // namespace kxsim
