#include <KXWAN/handset/LineSpeed.h>
#include <KXWAN/handset/PortSpeed.h>
#include <gtest/gtest.h>
#include <tests/support/ScriptedDevice.h>

namespace {

using Commands = std::vector<std::string>;

// A device that answers at its own speed only, with a modem that is at that speed and gives up
// after one short try.
class DeviceAtSpeed : public ScriptedDevice {
 public:
  DeviceAtSpeed(unsigned long baud, const Answers& answers, bool moves = true)
      : ScriptedDevice(ProfileAt(baud, answers, moves)) {
    Modem()->m_nRetries = 1;
    Modem()->m_dwResponseTimeout = 20;
    SetPort(baud);
  }
  void SetPort(unsigned long speed) { Modem()->m_pSerial->SetDataFormat(speed, -1, -1, -1); }
  unsigned long PortSpeed() {
    unsigned long speed = 0;
    Modem()->m_pSerial->GetDataFormat(&speed);
    return speed;
  }

 private:
  static kxsim::Profile ProfileAt(unsigned long baud, const Answers& answers, bool moves) {
    kxsim::Profile profile = kxsim::ScriptedProfile(answers);
    profile.line.autobaud = false;
    profile.line.baud = static_cast<int>(baud);
    profile.line.moves = moves;
    return profile;
  }
};

TEST(DetectModemBaudRate, RaisesTheSpeedByPlatform) {
  constexpr CHandsetPlatform kOthers = PLATFORM_GSM | PLATFORM_1XEVDO | PLATFORM_EDGE;
  struct Case {
    CHandsetPlatform platform;
    unsigned long baud;
    const char* speeds;  // answer to AT+IPR=?
    unsigned long expected;
    Commands commands;  // those that the device heard
  };
  const Case kCases[] = {
      {kOthers, 19200, "115200", 19200, {}},
      {PLATFORM_1XRTT, 19200, "(230400)", 230400, {"AT+IPR=?", "AT+IPR=230400", "ATE0V1"}},
      {PLATFORM_GPRS | PLATFORM_EDGE,
       19200,
       "(115200)",
       115200,
       {"AT+IPR=?", "AT+IPR=115200", "ATE0V1"}},
      {PLATFORM_1XRTT, 19200, "(0-921600)", 19200, {"AT+IPR=?"}},
      {PLATFORM_GPRS, 9600, "57600", 9600, {"AT+IPR=?"}},
      {PLATFORM_GPRS, 19200, "57600,115200", 57600, {"AT+IPR=?", "AT+IPR=57600", "ATE0V1"}},
      {PLATFORM_GPRS, 57600, "ERROR", 57600, {"AT+IPR=?"}},
      {PLATFORM_GPRS, 19200, "(silence)", 19200, {"AT+IPR=?"}}};
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.speeds);
    DeviceAtSpeed device(row.baud, {{"AT+IPR=?", row.speeds}, {"AT+IPR=*", "OK"}});
    unsigned long baud = row.baud;
    EXPECT_TRUE(DetectModemBaudRate(device.Modem(), row.platform, baud));
    EXPECT_EQ(baud, row.expected);
    EXPECT_EQ(device.PortSpeed(), row.expected);
    EXPECT_EQ(device.Commands(), row.commands);
  }
}

TEST(IsPortSpeedSupported, GoesBackToTheOldSpeed) {
  CString list("19200,57600");
  DeviceAtSpeed refusing(19200, {{"AT+IPR=57600", "ERROR"}});
  for (const unsigned long speed : {57600UL, 12345UL}) {
    EXPECT_FALSE(IsPortSpeedSupported(refusing.Modem(), speed, 19200, list));
    EXPECT_EQ(refusing.PortSpeed(), 19200U);
  }
  ScriptedDevice autobaud(Answers{});
  EXPECT_TRUE(IsPortSpeedSupported(autobaud.Modem(), 115200, 19200, list));
  EXPECT_EQ(autobaud.Commands(), Commands{"ATE0V1"});
}

TEST(LineSpeed, IsFoundWhereTheDeviceAnswers) {
  DeviceAtSpeed device(9600, {{"ATE0V1", "ERROR"}});
  device.SetPort(19200);
  unsigned long speed = 0;
  EXPECT_TRUE(kxwan::FindLineSpeed(device.Modem(), speed));
  EXPECT_EQ(speed, 9600U);
  EXPECT_EQ(device.PortSpeed(), 9600U);
  device.Device().HangUp();
  EXPECT_FALSE(kxwan::FindLineSpeed(device.Modem(), speed));
  EXPECT_EQ(speed, 9600U);
}

TEST(LineSpeed, ChangeIsCheckedAndUndone) {
  struct Case {
    const char* answer;  // to AT+IPR=
    bool moves;
    unsigned long asked;
    bool changed;
    Commands commands;
  };
  const Case kCases[] = {{"OK", true, 115200, true, {"AT+IPR=115200", "ATE0V1"}},
                         {"+CME ERROR: 3", true, 115200, false, {"AT+IPR=115200"}},
                         {"OK", false, 115200, false, {"AT+IPR=115200"}},
                         {"OK", true, 12345, false, {}}};
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.answer);
    DeviceAtSpeed device(19200, {{"AT+IPR=*", row.answer}}, row.moves);
    EXPECT_EQ(kxwan::ChangeLineSpeed(device.Modem(), row.asked), row.changed);
    EXPECT_EQ(device.PortSpeed(), row.changed ? row.asked : 19200U);
    EXPECT_EQ(device.Commands(), row.commands);
  }
}

}  // namespace
