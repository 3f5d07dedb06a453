#include <KXWAN/serial/KxSerial.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <simulator/line/PseudoTerminal.h>
#include <sys/ioctl.h>
#include <tests/support/TestLog.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace {

using testing::HasSubstr;

TEST(KxSerialOpen, FailsWithTheSystemsWordAndLeavesThePortClosed) {
  const std::string longPath(5000, 'x');
  const struct {
    std::string path;
    std::string complaint;
  } kCases[] = {
      {"/nowhere/vspbb", "Error opening '/nowhere/vspbb' - No such file or directory(2).\n"},
      {"", "Error opening '' - No such file or directory(2).\n"},
      {"/no\x01\xFFwhere", "Error opening '/no??where' - No such file or directory(2).\n"},
      {"/tmp", "Error opening '/tmp' - Is a directory(21).\n"},
      {longPath, "Error opening '" + longPath.substr(0, 258) + "' - File name too long(36).\n"},
      {"/dev/null", "Getting TIOCEXCL '/dev/null' - Inappropriate ioctl for device(25).\n"},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.path);
    nextPortID = -1;
    KxSerial port;
    port.isOpen = 1;
    EXPECT_EQ(port.Open(row.path.c_str()), 0);
    EXPECT_THAT(TakeLog(), HasSubstr("KxSerial::Open() - " + row.complaint));
    EXPECT_EQ(port.fd, -1);
    EXPECT_EQ(port.portID, 0xFFFFFFFF);
    EXPECT_EQ(portList[0].id, 0u);
    EXPECT_EQ(port.isOpen, 0);
    EXPECT_EQ(port.lineGeneration, 0u);
    port.Close();
    EXPECT_EQ(TakeLog(), "");
  }
}

struct termios Attributes(const kxsim::PseudoTerminal& line) {
  struct termios attributes = {};
  EXPECT_EQ(tcgetattr(line.Master(), &attributes), 0);
  return attributes;
}

// The flags and control characters.
bool Same(const struct termios& one, const struct termios& other) {
  return std::memcmp(&one, &other, offsetof(struct termios, c_ispeed)) == 0;
}

// The superuser may open an exclusive line, so the flag itself is looked at.
bool IsExclusive(int fd) {
  int exclusive = -1;
  EXPECT_EQ(ioctl(fd, TIOCGEXCL, &exclusive), 0);
  return exclusive != 0;
}

TEST(KxSerialOpen, TakesTheLineOverAndCloseGivesItBack) {
  for (const bool raw : {false, true}) {
    SCOPED_TRACE(raw);
    kxsim::PseudoTerminal line;
    ASSERT_TRUE(line.Open(raw));
    const struct termios former = Attributes(line);
    void* opaque = nullptr;
    ASSERT_EQ(CreateISSerial(&opaque), 0);
    KxSerial& port = *static_cast<KxSerial*>(opaque);
    ASSERT_EQ(port.Open(line.Path().c_str()), 1);
    struct termios expected = former;
    expected.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    expected.c_cflag |= CREAD | CLOCAL;
    expected.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ECHOE | ISIG);
    expected.c_cc[VMIN] = 0;
    expected.c_cc[VTIME] = 1;
    cfsetspeed(&expected, B19200);
    EXPECT_TRUE(Same(Attributes(line), expected));
    EXPECT_TRUE(IsExclusive(port.fd));
    EXPECT_EQ(fcntl(port.fd, F_GETFL) & O_NONBLOCK, 0);
    EXPECT_EQ(fcntl(port.fd, F_GETFD), FD_CLOEXEC);

    DeleteISSerial(opaque);
    EXPECT_TRUE(Same(Attributes(line), former));
    const int again = open(line.Path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_FALSE(IsExclusive(again));
    close(again);
  }
}

TEST(KxSerialOpen, NeverGivesTheProgramAControllingTerminal) {
  kxsim::PseudoTerminal line;
  ASSERT_TRUE(line.Open(true));
  const auto openAsSessionLeader = [&] {
    KxSerial port;
    const bool opened = setsid() != -1 && port.Open(line.Path().c_str()) == 1;
    std::_Exit(opened && open("/dev/tty", O_RDWR) == -1 ? 0 : 1);
  };
  EXPECT_EXIT(openAsSessionLeader(), testing::ExitedWithCode(0), "");
}

TEST(PortSlots, TellWhichObjectHoldsWhichPort) {
  nextPortID = -1;
  kxsim::PseudoTerminal lines[7];
  KxSerial ports[7];
  for (int i = 0; i < 7; ++i) {
    ASSERT_TRUE(lines[i].Open(true));
    EXPECT_EQ(ports[i].Open(lines[i].Path().c_str()), 1);
    EXPECT_EQ(ports[i].portID, i < 6 ? 0x104u + static_cast<uint32_t>(i) : 0xFFFFFFFF);
  }
  EXPECT_THAT(TakeLog(), HasSubstr("KxSerial::AllocatePortID() - no port slots available\n"));
  ports[6].Close();
  EXPECT_EQ(WithoutStamps(TakeLog()),
            "KxSerial::Close()\nKxSerial::DeallocatePortID() - ID:0xFFFFFFFF is not open\n");
  ports[0].Close();
  TakeLog();

  const std::string path(5000, 'x');
  const std::string shown = path.substr(0, 258) + "\n";
  EXPECT_EQ(ports[0].AllocatePortID(path.c_str()), 0x10Au);
  EXPECT_EQ(portList[0].path, path.substr(0, 255));
  EXPECT_EQ(ports[0].AllocatePortID(path.c_str()), 0xFFFFFFFF);
  EXPECT_EQ(WithoutStamps(TakeLog()), "KxSerial::AllocatePortID() ID:0x10A, path:" + shown +
                                          "KxSerial::AllocatePortID() - port " +
                                          path.substr(0, 258) + " is already open\n");
}

}  // namespace
