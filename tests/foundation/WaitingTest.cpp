#include <KXWAN/foundation/Clock.h>
#include <KXWAN/foundation/ClockPrivate.h>
#include <gtest/gtest.h>
#include <sys/time.h>

#include <cerrno>
#include <chrono>
#include <csignal>

TEST(Waiting, WrapsAt32Bits) {
  EXPECT_EQ(WaitMilliSecond(0), 0);
  // 2^32 / 8 milliseconds are a multiple of 2^32 microseconds.
  EXPECT_EQ(WaitMilliSecond(0x20000000), 0);
}

// Signals that come as long as this lives.
class Interruptions {
 public:
  Interruptions() {
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    sigaction(SIGALRM, &action, &before_);
    const itimerval soon = {{0, 1000}, {0, 1000}};
    setitimer(ITIMER_REAL, &soon, nullptr);
  }
  ~Interruptions() {
    const itimerval never = {};
    setitimer(ITIMER_REAL, &never, nullptr);
    sigaction(SIGALRM, &before_, nullptr);
  }

 private:
  struct sigaction before_ = {};
};

TEST(Waiting, GivesWhatAnInterruptedSleepGave) {
  const Interruptions signals;
  EXPECT_EQ(WaitMilliSecond(60000), -1);
  EXPECT_EQ(errno, EINTR);
}

TEST(Waiting, IsDoneFullyWhereItMustBe) {
  using Clock = std::chrono::steady_clock;
  const Interruptions signals;
  const Clock::time_point start = Clock::now();
  kxwan::WaitFully(std::chrono::milliseconds(1000));
  EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(1000));
}
