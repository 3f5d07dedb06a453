#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace kxsim {

// Waits for many descriptors and timers at once and calls back. Everything but Post and Stop
// belongs to the thread that runs it.
class Loop {
 public:
  using Clock = std::chrono::steady_clock;
  using Callback = std::function<void()>;
  using Ready = std::function<void(short events)>;
  using TimerKey = std::pair<Clock::time_point, uint64_t>;

  Loop();
  ~Loop();
  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;

  // Watches a descriptor, which stays the caller's; a second call replaces the first.
  void Watch(int descriptor, short events, Ready ready);
  void SetEvents(int descriptor, short events);
  void Unwatch(int descriptor);

  TimerKey At(Clock::time_point when, Callback callback);
  void Cancel(const TimerKey& key);

  // From any thread: runs the callback in the loop, soon.
  void Post(Callback callback);
  // From any thread or a signal handler: lets Run return.
  void Stop();
  void Run();

 private:
  struct Watcher {
    short events;
    uint64_t generation;
    Ready ready;
  };

  void Wake() const;
  void Wait();
  void RunTimers();
  void RunPosted();

  int wakeUp_[2] = {-1, -1};
  uint64_t counter_ = 0;
  std::map<int, Watcher> watchers_;
  std::map<TimerKey, Callback> timers_;
  std::mutex mutex_;
  std::vector<Callback> posted_;
  std::atomic<bool> stop_ = false;
};

}  // namespace kxsim
