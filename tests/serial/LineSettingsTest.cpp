#include <KXWAN/serial/KxSerial.h>
#include <gtest/gtest.h>
#include <simulator/line/PseudoTerminal.h>
#include <tests/serial/SpeedNumber.h>
#include <tests/support/TestLog.h>

namespace {

class LineSettings : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(line.Open(true));
    ASSERT_EQ(port.Open(line.Path().c_str()), 1);
    TakeLog();
  }
  struct termios Attributes() const {
    struct termios attributes = {};
    EXPECT_EQ(tcgetattr(line.Master(), &attributes), 0);
    return attributes;
  }
  // The port's speed, or 7 when it cannot tell.
  unsigned long Speed() {
    unsigned long speed = 7;
    const int result = port.GetDataFormat(&speed);
    EXPECT_EQ(result, speed == 7 ? 0 : 1);
    return speed;
  }

  kxsim::PseudoTerminal line;
  KxSerial port;
};

TEST_F(LineSettings, SpeedsAreBitsPerSecondBothWays) {
  uint32_t generation = port.lineGeneration;
  for (const unsigned long speed : {300ul, 9600ul, 57600ul, 115200ul, 230400ul, 460800ul}) {
    SCOPED_TRACE(speed);
    EXPECT_EQ(port.SetDataFormat(speed, -1, -1, -1), 1);
    EXPECT_EQ(port.lineGeneration, ++generation);
    EXPECT_EQ(static_cast<unsigned long>(line.HostSpeed()), speed);
    EXPECT_EQ(Speed(), speed);
    const tcflag_t framing = Attributes().c_cflag;
    EXPECT_EQ(port.SetDataFormat(speed, E_PARITY_EVEN, E_BYTESIZE_7, E_STOPBITS_2), 1);
    EXPECT_EQ(Attributes().c_cflag, framing);
    EXPECT_EQ(port.lineGeneration, generation);
  }
  EXPECT_EQ(TakeLog(), "");
}

// 13 and 4098 are the system's codes of speeds, and 0 would hang up.
TEST_F(LineSettings, UnknownSpeedChangesNothing) {
  for (const unsigned long speed : {0ul, 13ul, 4098ul, 12345ul, ~0ul}) {
    SCOPED_TRACE(speed);
    EXPECT_EQ(port.SetDataFormat(speed, -1, -1, -1), 0);
    EXPECT_EQ(WithoutStamps(TakeLog()),
              "KxSerial::SetDataFormat() - Error cfsetspeed - Invalid argument(22).\n");
    EXPECT_EQ(Speed(), 19200u);
    EXPECT_EQ(port.lineGeneration, 1u);
  }
}

TEST_F(LineSettings, AnySpeedIsRead) {
  for (const unsigned speed : {250000u, 0u, 7200u, 9600u}) {
    SCOPED_TRACE(speed);
    ASSERT_TRUE(SetSpeedNumber(line.Master(), speed));
    EXPECT_EQ(Speed(), speed);
  }
  struct termios hungUp = Attributes();
  cfsetspeed(&hungUp, B0);
  tcsetattr(line.Master(), TCSANOW, &hungUp);
  EXPECT_EQ(Speed(), 0u);
  ASSERT_TRUE(SetSpeedNumber(line.Master(), 250000));
  const uint32_t generation = port.lineGeneration;
  EXPECT_EQ(port.SetDataFormat(250000, -1, -1, -1), 0);
  EXPECT_EQ(Speed(), 250000u);
  EXPECT_EQ(port.SetDataFormat(115200, -1, -1, -1), 1);
  EXPECT_EQ(Speed(), 115200u);
  EXPECT_EQ(port.lineGeneration, generation + 1);
}

TEST_F(LineSettings, FlowControlIsOnOffOrLeft) {
  const struct {
    int mode;
    bool handshake;
  } kCases[] = {{2, true}, {1, true}, {77, true}, {0, false}, {1, false}, {-1, false}};
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.mode);
    EXPECT_EQ(port.SetFlowControl(row.mode), 1);
    EXPECT_EQ((Attributes().c_cflag & CRTSCTS) != 0, row.handshake);
  }
  port.SetDataFormat(9600, -1, -1, -1);
  EXPECT_EQ(port.SetModemData(), 1);
  EXPECT_TRUE(Attributes().c_cflag & CRTSCTS);
  EXPECT_EQ(Speed(), 19200u);
}

TEST_F(LineSettings, FailOnAClosedPortInTheirOwnWays) {
  port.Close();
  TakeLog();
  EXPECT_EQ(port.SetDataFormat(9600, -1, -1, -1), 0);
  EXPECT_EQ(Speed(), 7u);
  EXPECT_EQ(port.SetDTR(1), -1);
  testing::internal::CaptureStderr();
  const int count = port.SetFlowControl(1);
  const std::string complaint = testing::internal::GetCapturedStderr();
  const std::string cause = " tty attributes - Bad file descriptor(9).\n";
  EXPECT_EQ(complaint, "KxSerial::SetFlowControl() - Error getting" + cause);
  EXPECT_EQ(count, static_cast<int>(complaint.size()));
  EXPECT_EQ(WithoutStamps(TakeLog()), "KxSerial::SetDataFormat() - Error getting" + cause +
                                          "KxSerial::SetDataFormat(9600) - Error setting" + cause +
                                          "KxSerial::GetDataFormat() - Error getting" + cause);
}

}  // namespace
