#include <KXWAN/handset/CHandsetPlatform.h>
#include <KXWAN/info/Battery.h>
#include <KXWAN/info/QueryPrivate.h>
#include <gtest/gtest.h>
#include <tests/support/ScriptedDevice.h>

namespace {

using Commands = std::vector<std::string>;

TEST(Battery, CommandFollowsTheDeviceClass) {
  for (const bool umts : {false, true}) {
    const char* command = umts ? "AT+CBC" : "AT+CBC?";
    ScriptedDevice device(Answers{{command, "+CBC: 0,85"}, {command, "+CME ERROR: 3"}});
    ModemInfo info = {};
    info.dwDeviceFlags = umts ? +PLATFORM_UMTS : +PLATFORM_TDMA;
    EXPECT_TRUE(GetBatteryLevelFromDevice(device.Modem(), &info));
    EXPECT_FALSE(GetBatteryLevelFromDevice(device.Modem(), &info));
    EXPECT_EQ(info.dwBatteryLevel, 85U);
    EXPECT_EQ(device.Commands(), Commands(2, command));
  }
}

TEST(Battery, LevelDependsOnTheStatus) {
  struct Case {
    const char* answer;
    int32_t level;
    int32_t maxStrength = 0;
  };
  const Case kCases[] = {
      {"+CBC: 0,85", 85},
      {"+CBC: 1,0", 100},
      {"+CBC: 1,40", 40},
      {"+CBC: 2,50", 0},
      {"+CBC: 85,0", 85},
      {"+CBC: 85,2", 0},
      {"+CBC: 85,90", 0},
      {"0,85,3900", 3900},
      {"CBC: 1", 100},
      {"0", 0},
      {"+CBC: 0,3", 60, 5},
      {"+CBC: 0,5", 100, 5},
      {"+CBC: 0,-7", 0, 5},
      {"+CBC: 0,99999999999", INT32_MAX},
      {"+CBC: 0,-99999999999", 0, 1},
  };
  for (const Case& row : kCases) {
    EXPECT_EQ(kxwan::BatteryLevelOf(row.answer, row.maxStrength), row.level) << row.answer;
  }
}

TEST(ReadBattery, TellsPercentAndVoltageApart) {
  struct Case {
    const char* value;
    std::vector<int32_t> told;  // status, percent, millivolts
  };
  const Case kCases[] = {
      {"1, 100, 4180", {1, 100, 4180}},
      {"3900", {-1, -1, 3900}},
      {"3.9V", {-1, -1, 3900}},
      {"0,3712", {0, -1, 3712}},
      {"85,0", {0, 85, -1}},
      {"85,3900", {-1, 85, 3900}},
      {"64", {-1, 64, -1}},
      {"1", {1, -1, -1}},
      {"0.5V,101,-5,", {-1, -1, -1}},
      {"99999999999.9999V", {-1, -1, 1000999}},
  };
  for (const Case& row : kCases) {
    const kxwan::BatteryReading reading = kxwan::BatteryReadingOf(row.value);
    EXPECT_EQ((std::vector{reading.status, reading.percent, reading.millivolts}), row.told)
        << row.value;
  }
  kxwan::BatteryReading reading = {7, 7, 7};
  ScriptedDevice cdma(Answers{{"AT+CBC?", "ERROR"}, {"AT+CBC?", "RING\n+CBC: 0,60"}});
  EXPECT_FALSE(kxwan::ReadBattery(cdma.Modem(), reading));
  EXPECT_EQ(reading.percent, 7);
  EXPECT_TRUE(kxwan::ReadBattery(cdma.Modem(), reading));
  EXPECT_EQ(reading.percent, 60);
  EXPECT_EQ(cdma.Commands(), (Commands{"AT+CBC", "AT+CBC?", "AT+CBC", "AT+CBC?"}));
}

}  // namespace
