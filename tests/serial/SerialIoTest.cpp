#include <KXWAN/serial/KxSerial.h>
#include <KXWAN/serial/PortSlots.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <simulator/PseudoTerminal.h>
#include <sys/time.h>
#include <tests/support/TestLog.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <string_view>

namespace {

const unsigned char kCommand[] = {'A', 'T', '\r'};

class SerialIo : public testing::Test {
 protected:
  void SetUp() override {
    nextPortID = -1;
    ASSERT_TRUE(line.Open(true));
    ASSERT_EQ(port.Open(line.Path().c_str()), 1);
    TakeLog();
    std::memset(buffer, '#', sizeof buffer);
  }
  void Send(std::string_view text) const {
    EXPECT_EQ(write(line.Master(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
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

TEST_F(SerialIo, ReadGathersABurst) {
  Send("\r\nOK\r\n");
  EXPECT_EQ(Read(4), "4:\r\nOK");
  EXPECT_EQ(buffer[5], '#');
  EXPECT_EQ(Read(50), "2:\r\n");
  EXPECT_EQ(Read(50), "0:");
  Send("ab");
  EXPECT_EQ(port.Read(buffer, -1), 0);
  EXPECT_EQ(port.Read(buffer, 2), 2);
  EXPECT_EQ(TakeLog(), "");
}

TEST_F(SerialIo, ReadErrorReportsNoBytes) {
  int pipe[2];  // an empty one that does not block fails
  ASSERT_EQ(pipe2(pipe, O_NONBLOCK | O_CLOEXEC), 0);
  ASSERT_EQ(dup2(pipe[0], port.fd), port.fd);
  ASSERT_EQ(write(pipe[1], "OK", 2), 2);
  EXPECT_EQ(Read(10), "0:OK");
  EXPECT_EQ(port.isOpen, 0);
  EXPECT_GE(port.fd, 0);
  close(pipe[0]);
  close(pipe[1]);
  EXPECT_EQ(
      WithoutStamps(TakeLog()),
      "KxSerial::Read() - Error reading from modem - Resource temporarily unavailable(11).\n");
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
  tcflow(port.fd, TCOOFF);
  EXPECT_EQ(port.Write(kCommand, sizeof kCommand), 0);
  EXPECT_EQ(port.isOpen, 1);
  EXPECT_EQ(fcntl(port.fd, F_GETFL) & O_NONBLOCK, 0);
  tcflow(port.fd, TCOON);
  EXPECT_EQ(port.Write(kCommand, sizeof kCommand), 1);
  EXPECT_EQ(TakeLog(), "");
  timer = {};
  setitimer(ITIMER_REAL, &timer, nullptr);
}

}  // namespace
