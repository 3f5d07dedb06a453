#pragma once

#include <signal.h>

#include <mutex>

namespace kxsim {

// The event library takes SIGCHLD of the whole process while one of its children runs, and leaves
// the default behind. Children are started and forgotten under one of these: when none is left, the
// signal is again what the program had made of it.
class ChildSignal {
 public:
  ChildSignal();
  ~ChildSignal();
  ChildSignal(const ChildSignal&) = delete;
  ChildSignal& operator=(const ChildSignal&) = delete;

  void Started() { ++children_; }
  void Forgotten() { --children_; }

 private:
  static std::mutex mutex_;
  static int children_;
  static struct sigaction before_;

  const std::lock_guard<std::mutex> lock_;
};

}  // namespace kxsim
