#include <KXWAN/handset/LineSpeed.h>
#include <gtest/gtest.h>
#include <tests/handset/DeviceAtSpeed.h>
#include <tests/support/BusyMachine.h>
#include <tests/support/SideBySide.h>

namespace {

using Commands = std::vector<std::string>;

constexpr CHandsetPlatform kOthers = PLATFORM_GSM | PLATFORM_1XEVDO | PLATFORM_EDGE;

struct Case {
  const char* name;
  CHandsetPlatform platform;
  unsigned long baud;
  const char* speeds;  // answer to AT+IPR=?
  unsigned long expected;
  Commands commands;  // those that the device heard
};

const Case kCases[] = {
    {"another platform", kOthers, 19200, "115200", 19200, {}},
    {"1xRTT", PLATFORM_1XRTT, 19200, "(230400)", 230400, {"AT+IPR=?", "AT+IPR=230400", "ATE0V1"}},
    {"GPRS with EDGE",
     PLATFORM_GPRS | PLATFORM_EDGE,
     19200,
     "(115200)",
     115200,
     {"AT+IPR=?", "AT+IPR=115200", "ATE0V1"}},
    {"a range of speeds", PLATFORM_1XRTT, 19200, "(0-921600)", 19200, {"AT+IPR=?"}},
    {"GPRS at 9600", PLATFORM_GPRS, 9600, "57600", 9600, {"AT+IPR=?"}},
    {"GPRS", PLATFORM_GPRS, 19200, "57600,115200", 57600, {"AT+IPR=?", "AT+IPR=57600", "ATE0V1"}},
    {"GPRS at 57600", PLATFORM_GPRS, 57600, "ERROR", 57600, {"AT+IPR=?"}},
    {"silent about its speeds", PLATFORM_GPRS, 19200, "(silence)", 19200, {"AT+IPR=?"}},
};

TEST(DetectModemBaudRate, RaisesTheSpeedByPlatform) {
  SideBySide(kCases, [](const Case& row) {
    OnABusyMachine([&] {
      DeviceAtSpeed device(row.baud, {{"AT+IPR=?", row.speeds}, {"AT+IPR=*", "OK"}});
      device.ExpectSilence(3000);
      unsigned long baud = row.baud;
      EXPECT_TRUE(DetectModemBaudRate(device.Modem(), row.platform, baud));
      EXPECT_EQ(baud, row.expected);
      EXPECT_EQ(device.PortSpeed(), row.expected);
      EXPECT_EQ(device.Commands(), row.commands);
    });
  });
}

TEST(IsPortSpeedSupported, GoesBackToTheOldSpeed) {
  CString list("19200,57600");
  DeviceAtSpeed refusing(19200, {{"AT+IPR=57600", "ERROR"}});
  refusing.ExpectSilence(3000);
  for (const unsigned long speed : {57600UL, 12345UL}) {
    EXPECT_FALSE(IsPortSpeedSupported(refusing.Modem(), speed, 19200, list));
    EXPECT_EQ(refusing.PortSpeed(), 19200U);
  }
  ScriptedDevice autobaud(Answers{});
  EXPECT_TRUE(IsPortSpeedSupported(autobaud.Modem(), 115200, 19200, list));
  EXPECT_EQ(autobaud.Commands(), Commands{"ATE0V1"});
}

}  // namespace
