#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace kxsim {

// Waits for many descriptors and timers at once and calls back. Everything but Post and Stop
// belongs to the thread that runs it.
class Loop {
 public:
  using Clock = std::chrono::steady_clock;
  using Callback = std::function<void()>;
  using Ready = std::function<void(short events)>;
  using TimerKey = uint64_t;

  Loop();
  ~Loop();
  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;

  // Watches a descriptor, which stays the caller's; a second call replaces the first. Events are
  // POLLIN and POLLOUT. A sentence when the system refuses.
  std::optional<std::string> Watch(int descriptor, short events, Ready ready);
  void SetEvents(int descriptor, short events);
  // Before the descriptor is closed.
  void Unwatch(int descriptor);

  // Calls back once, never before that time and mostly within a millisecond after it.
  TimerKey At(Clock::time_point when, Callback callback);
  void Cancel(TimerKey key);

  // Runs a shell command with a descriptor as its standard input and output, in a session of its
  // own, and collects it when it ends. Gives its number. While a command runs, SIGCHLD of the whole
  // process is the loop's; afterwards it is again what it was.
  std::optional<int> RunCommand(std::string command, int descriptor);

  // From any thread: runs the callback in the loop, soon.
  void Post(Callback callback);
  // From any thread or a signal handler: lets Run return.
  void Stop();
  void Run();

 private:
  // What the event library holds; each is freed once the library has closed it.
  struct Library;
  struct Watcher;
  struct Timer;
  struct Process;

  void OnWakeUp();
  void OnTimer(TimerKey key);
  void OnExit(int process);

  const std::unique_ptr<Library> library_;
  std::optional<std::string> refusal_;  // why the system gives no loop
  std::map<int, Watcher*> watchers_;    // by descriptor
  std::map<TimerKey, Timer*> timers_;
  std::map<int, Process*> processes_;  // by number
  TimerKey lastTimer_ = 0;
  std::mutex mutex_;
  std::vector<Callback> posted_;
  std::atomic<bool> stop_ = false;
};

}  // namespace kxsim
