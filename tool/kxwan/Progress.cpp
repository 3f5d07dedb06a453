#include <tool/kxwan/Progress.h>

#include <unistd.h>

#include <chrono>
#include <cstdio>

namespace kxtool {

Progress::Progress(std::string what, bool wanted) : what_(std::move(what)) {
  if (wanted && isatty(STDOUT_FILENO) != 0) thread_ = std::thread(&Progress::Show, this);
}

Progress::~Progress() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    done_ = true;
  }
  ended_.notify_one();
  thread_.join();
}

void Progress::Show() {
  using Clock = std::chrono::steady_clock;
  constexpr const char* kSpinner[] = {"|", "/", "-", "\\"};
  const auto start = Clock::now();
  bool shown = false;
  std::unique_lock<std::mutex> lock(mutex_);
  for (size_t turn = 0;
       !ended_.wait_for(lock, std::chrono::milliseconds(200), [&] { return done_; }); ++turn) {
    const std::chrono::duration<double> passed = Clock::now() - start;
    std::printf("\r%s %s %.1f s\033[K", kSpinner[turn % 4], what_.c_str(), passed.count());
    std::fflush(stdout);
    shown = true;
  }
  if (!shown) return;
  std::printf("\r\033[K");  // leaves the line empty for the result
  std::fflush(stdout);
}

}  // namespace kxtool
