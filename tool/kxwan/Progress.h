#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace kxtool {

// Shows that something goes on, with the seconds it has taken, as long as the object lives; on
// standard output, and only when that is a terminal.
class Progress {
 public:
  Progress(std::string what, bool wanted);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

 private:
  void Show();

  const std::string what_;
  std::mutex mutex_;
  std::condition_variable ended_;
  bool done_ = false;
  std::thread thread_;
};

}  // namespace kxtool
