#include <KXWAN/serial/KxSerial.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <simulator/line/PseudoTerminal.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string>

namespace {

// The descriptor whose close is watched and the other end of its line; how often a close was the
// last one of the open file, which is the one that waits for held output; whether attributes can be
// set; and whether a child takes long to end.
int g_watched = -1;
int g_otherEnd = -1;
int g_lastCloses = 0;
bool g_settable = true;
bool g_late = false;

bool IsHungUp(int fd) {
  struct pollfd line = {fd, POLLIN, 0};
  return poll(&line, 1, 0) == 1 && (line.revents & POLLHUP) != 0;
}

}  // namespace

// The linker puts these in front of the system's (--wrap).
extern "C" {
int __real_close(int fd);
int __real_tcsetattr(int fd, int actions, const struct termios* attributes);
pid_t __real_waitpid(pid_t pid, int* status, int options);

int __wrap_close(int fd) {
  const bool watched = fd == g_watched;
  const int result = __real_close(fd);
  if (watched && IsHungUp(g_otherEnd)) ++g_lastCloses;
  return result;
}

int __wrap_tcsetattr(int fd, int actions, const struct termios* attributes) {
  if (g_settable) return __real_tcsetattr(fd, actions, attributes);
  errno = EIO;
  return -1;
}

pid_t __wrap_waitpid(pid_t pid, int* status, int options) {
  return g_late ? 0 : __real_waitpid(pid, status, options);
}
}

namespace {

class Close : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(line.Open(true));
    ASSERT_EQ(port.Open(Path()), 1);
    g_lastCloses = 0;
  }
  void TearDown() override {
    g_watched = -1;
    g_settable = true;
  }
  const char* Path() const { return line.Path().c_str(); }
  // The superuser may open an exclusive line, so the flag itself is looked at.
  bool IsExclusive() const {
    const int fd = open(Path(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd == -1) return errno == EBUSY;
    int exclusive = -1;
    EXPECT_EQ(ioctl(fd, TIOCGEXCL, &exclusive), 0);
    close(fd);
    return exclusive != 0;
  }
  // Puts a line in the port's place whose system tells of output that has not gone out: a pseudo-
  // terminal never does, a socket does while the other end, given here, has not read it.
  int HoldOutput(const std::string& text) {
    int ends[2] = {-1, -1};
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    EXPECT_EQ(dup2(ends[0], port.fd), port.fd);
    close(ends[0]);
    EXPECT_EQ(write(port.fd, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    g_watched = port.fd;
    g_otherEnd = ends[1];
    return ends[1];
  }

  kxsim::PseudoTerminal line;
  KxSerial port;
};

sigset_t SetMask(int how, const sigset_t& signals) {
  sigset_t former;
  pthread_sigmask(how, &signals, &former);
  return former;
}

// Looks without taking one off the list.
bool NoChildIsLeft() {
  return waitid(P_ALL, 0, nullptr, WEXITED | WNOHANG | WNOWAIT | __WALL) == -1 && errno == ECHILD;
}

volatile sig_atomic_t g_childSignals = 0;

TEST_F(Close, IsTheLastOneOnlyWhenNothingIsHeld) {
  const struct {
    const char* held;
    bool blocked;
    int lastCloses;
  } kCases[] = {{"", false, 1}, {"AT\r", false, 0}, {"AT\r", true, 0}};
  struct sigaction count = {};
  count.sa_handler = [](int) { g_childSignals = g_childSignals + 1; };
  struct sigaction former = {};
  sigaction(SIGCHLD, &count, &former);
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.held + std::string(row.blocked ? " blocked" : ""));
    SetUp();
    const int otherEnd = HoldOutput(row.held);
    sigset_t all;
    sigfillset(&all);
    const sigset_t mask = SetMask(row.blocked ? SIG_BLOCK : SIG_UNBLOCK, all);
    port.Close();
    const sigset_t left = SetMask(SIG_SETMASK, mask);
    EXPECT_EQ(sigismember(&left, SIGTERM), row.blocked ? 1 : 0);
    EXPECT_EQ(g_lastCloses, row.lastCloses);
    EXPECT_TRUE(IsHungUp(otherEnd)) << "somebody still holds the line";
    EXPECT_TRUE(NoChildIsLeft());
    close(otherEnd);
  }
  EXPECT_EQ(g_childSignals, 0);
  sigaction(SIGCHLD, &former, nullptr);
}

TEST_F(Close, DoesNotWaitForADriverAndTidiesUpLater) {
  g_late = true;
  const int first = HoldOutput("AT\r");
  port.Close();
  g_late = false;
  EXPECT_FALSE(NoChildIsLeft());
  SetUp();
  const int second = HoldOutput("AT\r");
  port.Close();
  EXPECT_TRUE(NoChildIsLeft());
  close(first);
  close(second);
}

TEST_F(Close, LetsGoOfALineThatNobodyReads) {
  ASSERT_EQ(port.Write(reinterpret_cast<const unsigned char*>("AT\r"), 3), 1);
  const std::string text(4096, 'A');
  while (write(port.fd, text.data(), text.size()) > 0) {
  }
  EXPECT_EQ(errno, EAGAIN);
  port.Close();
  EXPECT_FALSE(IsExclusive());
  EXPECT_EQ(port.Open(Path()), 1);
}

TEST_F(Close, AFailedOpenGivesUpExclusiveUseToo) {
  port.Close();
  g_settable = false;
  EXPECT_EQ(port.Open(Path()), 0);
  EXPECT_FALSE(IsExclusive());
}

TEST_F(Close, LeavesTheExclusiveUseOfAnother) {
  if (geteuid() != 0) GTEST_SKIP() << "only the superuser gets a line that another holds";
  for (const bool opens : {true, false}) {
    SCOPED_TRACE(opens);
    KxSerial second;
    g_settable = opens;
    EXPECT_EQ(second.Open(Path()), opens ? 1 : 0);
    g_settable = true;
    second.Close();
    EXPECT_TRUE(IsExclusive());
  }
  port.Close();
  EXPECT_FALSE(IsExclusive());
}

}  // namespace
