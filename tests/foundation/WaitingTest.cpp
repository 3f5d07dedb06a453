#include <KXWAN/foundation/Waiting.h>
#include <gtest/gtest.h>
#include <sys/time.h>

#include <cerrno>
#include <csignal>

TEST(Waiting, WrapsAt32Bits) {
  EXPECT_EQ(WaitMilliSecond(0), 0);
  // 2^32 / 8 milliseconds are a multiple of 2^32 microseconds.
  EXPECT_EQ(WaitMilliSecond(0x20000000), 0);
}

TEST(Waiting, GivesWhatAnInterruptedSleepGave) {
  struct sigaction action = {};
  struct sigaction before = {};
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, &before);
  const itimerval soon = {{0, 1000}, {0, 1000}};
  const itimerval never = {};
  setitimer(ITIMER_REAL, &soon, nullptr);
  const int result = WaitMilliSecond(60000);
  const int error = errno;
  setitimer(ITIMER_REAL, &never, nullptr);
  sigaction(SIGALRM, &before, nullptr);
  EXPECT_EQ(result, -1);
  EXPECT_EQ(error, EINTR);
}
