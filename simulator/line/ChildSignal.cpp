#include <simulator/line/ChildSignal.h>

namespace kxsim {

std::mutex ChildSignal::mutex_;
int ChildSignal::children_ = 0;
struct sigaction ChildSignal::before_ = {};

ChildSignal::ChildSignal() : lock_(mutex_) {
  if (children_ == 0) sigaction(SIGCHLD, nullptr, &before_);
}

ChildSignal::~ChildSignal() {
  if (children_ == 0) sigaction(SIGCHLD, &before_, nullptr);
}

}  // namespace kxsim
