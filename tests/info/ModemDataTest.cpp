#include <KXWAN/info/Battery.h>
#include <KXWAN/info/ModemData.h>
#include <gtest/gtest.h>
#include <tests/support/Dialogue.h>

#include <cstring>

namespace {

using std::string_literals::operator""s;

TEST(ModemData, ReadsInItsOrder) {
  const Answers kAnswers = {{"ATE0V1", "OK"},    {"AT+GMI", "Nokia"},
                            {"AT+GMM", "6310i"}, {"AT+GCAP", "+CGSM"},
                            {"AT+CGATT=?", "1"}, {"AT+CGQMIN=?", "OK"},
                            {"AT+CMEE=1", "OK"}, {"AT+CPIN?", "+CME ERROR: 10"},
                            {"AT+CMEE=0", "OK"}, {"AT+GMR", "V 5.50"},
                            {"AT+CSQ", "31,99"}};
  ScriptedDevice device(kAnswers);
  ModemInfo info;
  std::memset(&info, 0xEE, sizeof info);
  EXPECT_TRUE(GetModemData(device.Modem(), &info));
  EXPECT_EQ(device.Commands(), CommandsOf(kAnswers));
  EXPECT_STREQ(info.szCoverage, "Digital");
  EXPECT_STREQ(info.szReserved, "");
  EXPECT_EQ(info.dwBatteryLevel, 0U);
  EXPECT_EQ(info.bSIMNotInserted, 0) << "an equipment error is not looked at";
}

TEST(ModemData, StopsAtASilentDevice) {
  ScriptedDevice device(Answers{{"ATE0V1", "(silence)"}});
  ModemInfo info;
  std::memset(&info, 0xEE, sizeof info);
  EXPECT_FALSE(GetModemData(device.Modem(), &info));
  ModemInfo* empty = CreateModemInfo();
  EXPECT_EQ(std::memcmp(&info, empty, sizeof info), 0);
  EXPECT_EQ(ReleaseModemInfo(empty), 0);
  EXPECT_EQ(device.Commands(), std::vector<std::string>{"ATE0V1"});
}

TEST(ModemData, SurvivesAnythingThatADeviceSays) {
  const std::pair<std::string, std::string> kCases[] = {
      // to every command; the manufacturer
      {"ERROR", "Error"},
      {"OK", "Unknown"},
      {std::string(10000, 'x'), std::string(62, 'x')},
      {std::string(100, '\xFF') + "a", "a"},
      {"\"(0,1,2", "\"(0,1,2"},
      {std::string(40, '9'), std::string(40, '9')},
      {"(raw)\r\na\0b\0\r\n\r\nOK\r\n"s, "ab"},
  };
  for (const auto& [answer, manufacturer] : kCases) {
    SCOPED_TRACE(manufacturer);
    ScriptedDevice device(Answers{{"AT*", answer}});
    ModemInfo info = {};
    EXPECT_TRUE(GetModemData(device.Modem(), &info));
    EXPECT_EQ(info.szManufacturer, manufacturer);
    for (const char* field : {info.szCapabilities, info.szCoverage, info.szModel, info.szVersion}) {
      EXPECT_LE(strnlen(field, 64), 62U);
    }
    GetBatteryLevelFromDevice(device.Modem(), &info);
  }
}

}  // namespace
