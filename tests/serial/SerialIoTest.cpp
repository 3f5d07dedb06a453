#include <KXWAN/serial/KxSerial.h>
#include <KXWAN/serial/SerialIoPrivate.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sched.h>
#include <simulator/line/PseudoTerminal.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <tests/support/TestLog.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <functional>
#include <string_view>

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

const unsigned char kCommand[] = {'A', 'T', '\r'};

const char kReadError[] =
    "KxSerial::Read() - Error reading from modem - Connection reset by peer(104).\n";

class SerialIo : public testing::Test {
 protected:
  void SetUp() override {
    nextPortID = -1;
    ASSERT_TRUE(line.Open(true));
    ASSERT_EQ(port.Open(line.Path().c_str()), 1);
    TakeLog();
    std::memset(buffer, '#', sizeof buffer);
  }
  // Until the system has carried it over.
  void Send(std::string_view text) const {
    const int before = Waiting();
    EXPECT_EQ(write(line.Master(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
    const auto end = steady_clock::now() + std::chrono::seconds(20);
    while (Waiting() < before + static_cast<int>(text.size()) && steady_clock::now() < end) {
      sched_yield();
    }
  }
  int Waiting() const {
    int bytes = 0;
    EXPECT_EQ(ioctl(port.fd, FIONREAD, &bytes), 0);
    return bytes;
  }
  // Line and port anew.
  void Renew() {
    port.Close();
    line.Close();
    ASSERT_TRUE(line.Open(true));
    ASSERT_EQ(port.Open(line.Path().c_str()), 1);
  }
  // Puts a line in the port's place that holds a text and then ends, or then fails: a socket whose
  // other end went, without or with something unread.
  void EndLineBehind(std::string_view text) { ReplaceLine(text, ""); }
  void BreakLineBehind(std::string_view text) { ReplaceLine(text, "AT"); }
  void ReplaceLine(std::string_view text, std::string_view unread) {
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    EXPECT_EQ(write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    EXPECT_EQ(write(ends[0], unread.data(), unread.size()), static_cast<ssize_t>(unread.size()));
    EXPECT_EQ(dup2(ends[0], port.fd), port.fd);
    close(ends[0]);
    close(ends[1]);
  }
  bool DoesNotBlock() const { return (fcntl(port.fd, F_GETFL) & O_NONBLOCK) != 0; }
  // What one call gave, "gone" in place of no bytes from a line that is.
  std::string Receive(size_t room, milliseconds wait) {
    char bytes[64];
    const kxwan::Arrival arrival = kxwan::Receive(port, bytes, room, wait);
    EXPECT_FALSE(arrival.gone && arrival.bytes > 0);
    return arrival.gone ? "gone" : std::string(bytes, arrival.bytes);
  }
  // What a read of at most len bytes leaves: its count, and the buffer up to the first NUL.
  std::string Read(unsigned long len) {
    unsigned long got = 99;
    const int result = port.Read(buffer, len, &got);
    EXPECT_EQ(result, got != 0 ? 1 : 0);
    return std::to_string(got) + ":" + reinterpret_cast<char*>(buffer);
  }

  kxsim::PseudoTerminal line;
  KxSerial port;
  unsigned char buffer[64];
};

// Before the first write and behind it, when the descriptor no longer blocks.
TEST_F(SerialIo, ReadGathersABurst) {
  for (const bool written : {false, true}) {
    SCOPED_TRACE(written);
    EXPECT_EQ(port.Write(kCommand, written ? sizeof kCommand : 0), 1);
    EXPECT_EQ(DoesNotBlock(), written);
    Send("\r\nOK\r\n");
    EXPECT_EQ(Read(4), "4:\r\nOK");
    Send("more");
    EXPECT_EQ(Read(50), "6:\r\nmore");
    EXPECT_EQ(buffer[7], '#');
    EXPECT_EQ(Read(50), "0:");
    Send("ab");
    EXPECT_EQ(port.Read(buffer, -1), 0);
    EXPECT_EQ(port.Read(buffer, 2), 2);
    std::memset(buffer, '#', sizeof buffer);
  }
  EXPECT_EQ(TakeLog(), "");
}

TEST_F(SerialIo, ReadErrorReportsNoBytes) {
  BreakLineBehind("OK");
  EXPECT_EQ(Read(10), "0:OK");
  EXPECT_EQ(port.isOpen, 0);
  EXPECT_GE(port.fd, 0);
  EXPECT_EQ(WithoutStamps(TakeLog()), kReadError);
}

TEST_F(SerialIo, TheFirstWriteOfAnOpenEndsBlockingForGood) {
  EXPECT_EQ(port.Write(kCommand, 1), 1);
  EXPECT_TRUE(DoesNotBlock());
  EXPECT_EQ(fcntl(port.fd, F_SETFL, 0), 0);
  EXPECT_EQ(port.Write(kCommand, 1), 1);
  EXPECT_FALSE(DoesNotBlock()) << "a later write touched the descriptor";
  ASSERT_EQ(port.Open(line.Path().c_str()), 1);
  EXPECT_FALSE(DoesNotBlock());
  EXPECT_EQ(port.Write(kCommand, 1), 1);
  EXPECT_TRUE(DoesNotBlock());
}

TEST_F(SerialIo, ReceiveTakesWhatIsThere) {
  for (const milliseconds wait : {milliseconds(5000), milliseconds(0)}) {
    SCOPED_TRACE(wait.count());
    Send("RING\r\n");
    EXPECT_EQ(Receive(4, wait), "RING");
    EXPECT_EQ(Receive(50, wait), "\r\n");
    EXPECT_TRUE(DoesNotBlock());
    EXPECT_EQ(Receive(50, milliseconds(0)), "");
    EXPECT_EQ(Receive(0, wait), "");
    ASSERT_EQ(port.Open(line.Path().c_str()), 1);
  }
  EXPECT_EQ(port.isOpen, 1);
}

// A read that may not even wait the tenth of a second gives nothing without an error.
TEST_F(SerialIo, AQuietLineIsNotGoneHoweverItsReadsEnd) {
  struct termios attributes = {};
  ASSERT_EQ(tcgetattr(port.fd, &attributes), 0);
  attributes.c_cc[VTIME] = 0;
  ASSERT_EQ(tcsetattr(port.fd, TCSANOW, &attributes), 0);
  EXPECT_EQ(Receive(50, milliseconds(0)), "");
  EXPECT_EQ(Receive(50, milliseconds(100)), "");
  EXPECT_EQ(Read(50), "0:");
  Send("RING");
  EXPECT_EQ(Receive(50, milliseconds(0)), "RING");
}

TEST_F(SerialIo, ReceiveTellsThatTheLineIsGone) {
  const struct {
    const char* what;
    std::function<void()> breakLine;
    std::string first;
    const char* log;
    signed char isOpen;
  } kCases[] = {
      {"hung up", [&] { line.Close(); }, "gone", "", 1},
      {"end of what was held", [&] { EndLineBehind("OK"); }, "OK", "", 1},
      {"fails behind what was held", [&] { BreakLineBehind("OK"); }, "OK", kReadError, 0},
      {"closed", [&] { port.Close(); }, "gone", "", 1},
  };
  for (const auto& row : kCases) {
    for (const milliseconds wait : {milliseconds(5000), milliseconds(0)}) {
      SCOPED_TRACE(row.what + (" " + std::to_string(wait.count())));
      Renew();
      row.breakLine();
      TakeLog();
      EXPECT_EQ(Receive(50, wait), row.first);
      EXPECT_EQ(Receive(50, wait), "gone");
      EXPECT_EQ(WithoutStamps(TakeLog()), row.log);
      EXPECT_EQ(port.isOpen, row.isOpen);
    }
  }
}

TEST_F(SerialIo, WriteSendsEveryByte) {
  EXPECT_EQ(port.Write(kCommand, sizeof kCommand), 1);
  struct pollfd sent = {line.Master(), POLLIN, 0};
  EXPECT_EQ(poll(&sent, 1, 5000), 1);
  EXPECT_EQ(read(line.Master(), buffer, sizeof buffer), 3);
  EXPECT_EQ(port.Write(kCommand, 0), 1);
  EXPECT_EQ(TakeLog(), "");
  EXPECT_EQ(port.Write(nullptr, 0), 0);
  EXPECT_EQ(WithoutStamps(TakeLog()), "KxSerial::Write() - lpBuffer is NULL\n");
  port.Close();
  TakeLog();
  EXPECT_EQ(port.Write(nullptr, 3), 0);
  EXPECT_EQ(Read(10), "0:");
  EXPECT_EQ(TakeLog(), "");
}

TEST_F(SerialIo, HangUpReadsAsSilenceAndFailsTheWrite) {
  line.Close();
  EXPECT_EQ(Read(10), "0:");
  signed char open = 99;
  EXPECT_EQ(port.GetRXBytes(&open), 1024);
  EXPECT_EQ(open, 1);
  EXPECT_EQ(port.Write(kCommand, sizeof kCommand), 0);
  port.GetRXBytes(&open);
  EXPECT_EQ(open, 0);
  port.Close();
  EXPECT_EQ(WithoutStamps(TakeLog()),
            "KxSerial::Write() - Error writing to modem - Input/output error(5).\n"
            "KxSerial::Close()\nKxSerial::DeallocatePortID() ID:0x104, path:" +
                line.Path() +
                "\nKxSerial::Close() - Error resetting tty attributes - Input/output error(5).\n");
}

// Also under signals that come faster than any wait ends.
TEST_F(SerialIo, SilenceAndAStalledLineEnd) {
  struct sigaction action = {};
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, nullptr);
  struct itimerval timer = {{0, 10000}, {0, 10000}};
  setitimer(ITIMER_REAL, &timer, nullptr);
  EXPECT_EQ(Read(10), "0:");
  const auto start = steady_clock::now();
  EXPECT_EQ(Receive(10, milliseconds(1000)), "");
  EXPECT_GE(steady_clock::now() - start, milliseconds(1000));
  tcflow(port.fd, TCOOFF);
  EXPECT_EQ(port.Write(kCommand, sizeof kCommand), 0);
  EXPECT_EQ(port.isOpen, 1);
  tcflow(port.fd, TCOON);
  EXPECT_EQ(port.Write(kCommand, sizeof kCommand), 1);
  EXPECT_EQ(TakeLog(), "");
  timer = {};
  setitimer(ITIMER_REAL, &timer, nullptr);
}

}  // namespace
