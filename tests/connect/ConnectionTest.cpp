#include <KXWAN/connect/Connection.h>
#include <KXWAN/connect/GprsSetup.h>
#include <KXWAN/connect/OneXSetup.h>
#include <KXWAN/foundation/LastError.h>
#include <KXWAN/handset/CHandsetPlatform.h>
#include <gtest/gtest.h>
#include <tests/support/Dialogue.h>
#include <tests/support/Host.h>

#include <algorithm>
#include <cstring>

namespace {

struct Case {
  CHandsetPlatform platform;
  const char* manufacturer;
  const char* model;
  const char* apn;
  unsigned long error;  // 0: prepared
  Answers dialogue;     // all that is sent, in order, and its answers
};

void PrintTo(const Case& row, std::ostream* out) {
  *out << std::hex << row.platform << " " << row.manufacturer << " " << row.model;
}

// Devices that go by their maker and devices that go by their model.
Case Gprs(CHandsetPlatform platform, const char* maker, unsigned long error, Answers dialogue) {
  return {platform, maker, "L Series", "web", error, std::move(dialogue)};
}
Case OneX(CHandsetPlatform platform, const char* model, unsigned long error, Answers dialogue) {
  return {platform, "", model, "web", error, std::move(dialogue)};
}

const std::pair<std::string, std::string> kAttached = {"AT+CGATT?", "+CGATT: 1"};
const std::string kContext1 = R"(AT+CGDCONT=1,"IP","web")";
const std::string kContext2 = R"(AT+CGDCONT=2,"IP","web")";
const std::string kContext3 = R"(AT+CGDCONT=3,"IP","web")";
const std::string kLongApn(2000, 'a');
const std::string kLongContext = R"(AT+CGDCONT=3,"IP",")" + kLongApn + "\"";

const Case kCases[] = {
    Gprs(2, "Motorola Inc", 0,
         {kAttached, {kContext1, "OK"}, {"AT+CGQMIN=1,0,0,0,0,0;+CGQREQ=1,0,0,0,0,0", "OK"}}),
    {2, "Motorola", "V60", "web", 103, {kAttached, {kContext3, "ERROR"}}},
    Gprs(0x80, "GTRAN", 103, {kAttached, {kContext1, "ERROR"}}),
    Gprs(2, "Sierra Wireless", 0, {kAttached, {kContext1, "OK"}}),
    Gprs(2, "Panasonic", 0, {kAttached, {kContext1, "OK"}, {"AT+CGQMIN=1;+CGQREQ=1", "OK"}}),
    Gprs(2, "Novatel", 0, {kAttached, {kContext3, "OK"}, {"AT+NWHFUN=0", "ERROR"}}),
    Gprs(7, "Nokia", 0, {kAttached, {kContext1, "OK"}, {"AT+CGEQMIN=1;+CGEQREQ=1", "OK"}}),
    Gprs(4, "SIEMENS", 103,
         {kAttached, {kContext2, "OK"}, {"AT+CGQMIN=2,0,0,0,0,0;+CGQREQ=2,0,0,0,0,0", "ERROR"}}),
    {2, "", "", kLongApn.c_str(), 103, {kAttached, {kLongContext, "+CME ERROR: 3"}}},
    {2, "", "", "", 0, {}},
    {2, "", "", nullptr, 0, {}},
    Gprs(2, "", 100, {{"AT+CGATT?", "ERROR"}}),
    Gprs(2, "", 102, {{"AT+CGATT?", "+CGATT: 0"}, {"AT+CGATT=1", "+CME ERROR: 148"}}),

    OneX(0x410, "9155", 0, {{"AT$QCMDR=2;$QCQNC=1", "OK"}}),
    OneX(0x400, "9150 TX-25B", 0,
         {{"AT+CRM=0", "OK"}, {"AT$QCMDR=2;$QCQNC=1", "ERROR"}, {"AT+CRM=0;+CSO=12", "OK"}}),
    OneX(0x400, "", 0,
         {{"AT$QCMDR=2;$QCQNC=1", "ERROR"},
          {"AT+CRM=0;+CSO=12", "+CME ERROR: 4"},
          {"AT$QCMIP=1", "OK"}}),
    OneX(0x810, "9155", 0, {{"AT$QCMIP=2", "OK"}}),
    OneX(0x30, "AirCard 9155", 0, {{"AT$QCSCRM=1", "ERROR"}, {"AT$QCMDR=3", "OK"}}),
    OneX(0x10, "TX-25B 9150", 0, {{"AT$QCSCRM=1", "OK"}, {"AT$QCMDR=3", "OK"}}),
    OneX(0x12, "TX-25B", 0,
         {{"AT+CRM=1", "OK"}, {"AT$QCMDR=3", "ERROR"}, {"AT+CRM=1;+CSO=33", "OK"}}),
    OneX(0x10, "", 101,
         {{"AT$QCMDR=3", "ERROR"}, {"AT+CRM=1;+CSO=33", "ERROR"}, {"AT$QCMIP=2", "ERROR"}}),
    OneX(0x10, "", 100, {{"AT$QCMDR=3", "+CME ERROR: 4"}}),
    OneX(0x10, "", 100, {{"AT$QCMDR=3", "(silence)"}}),
    OneX(0x1020, "9155", 0, {}),
    OneX(PLATFORM_GSM, "", 0, {}),
};

// A context that is accepted costs half a second, so each row is a test of its own and they run in
// parallel.
class PrepareDevice : public testing::TestWithParam<Case> {};

TEST_P(PrepareDevice, SendsWhatTheDeviceWants) {
  const Case& row = GetParam();
  KXModemProperties properties = {};
  properties.dwDeviceType = row.platform;
  std::strcpy(properties.szManufacturer, row.manufacturer);
  std::strcpy(properties.szModel, row.model);
  ScriptedDevice device(row.dialogue);
  SetModemError(7);
  EXPECT_EQ(PrepareDeviceForConnection(device.Modem(), &properties, row.apn), row.error == 0);
  EXPECT_EQ(GetLastModemError(), row.error);
  EXPECT_EQ(device.Commands(), CommandsOf(row.dialogue));
}

INSTANTIATE_TEST_SUITE_P(Of, PrepareDevice, testing::ValuesIn(kCases));

TEST(SetPhoneInGPRSMode, SetsTheTimeoutOnlyToAttach) {
  KXModemProperties properties = {};
  for (const char* attached : {"+CGATT: 1", "+CGATT: 0"}) {
    ScriptedDevice device(Answers{{"AT+CGATT?", attached}, {"AT+CGATT=1", "OK"}});
    device.Modem()->m_dwResponseTimeout = 9000;
    EXPECT_FALSE(SetPhoneInGPRSMode(device.Modem(), &properties, "web"));
    EXPECT_EQ(device.Modem()->m_dwResponseTimeout, attached[8] == '1' ? 9000u : 1500u);
  }
}

TEST(SetPhoneIn1XModeForSprint, TellsARefusalByItsResultAlone) {
  ScriptedDevice device(Answers{{"AT$QCMIP=2", "ERROR"}});
  SetModemError(7);
  EXPECT_FALSE(SetPhoneIn1XModeForSprint(device.Modem(), "", true));
  EXPECT_TRUE(SetPhoneIn1XModeForSprint(device.Modem(), "", false));
  EXPECT_EQ(GetLastModemError(), 7u);
  EXPECT_EQ(device.Commands().size(), 1u);
}

TEST(IsApn, TakesPrintableTextWithoutQuotes) {
  const std::string longest(100, 'a');
  for (const std::string& apn : {std::string("a"), std::string("my-apn_1.net"), longest}) {
    EXPECT_TRUE(kxwan::IsApn(apn.c_str())) << apn;
  }
  const std::string tooLong = longest + "a";
  for (const char* text : {"", "a\"b", "a\rb", "a\x7f", "caf\xc3\xa9", tooLong.c_str()}) {
    EXPECT_FALSE(kxwan::IsApn(text)) << text;
  }
  EXPECT_FALSE(kxwan::IsApn(nullptr));
}

// A device may take longer to attach than an ordinary answer takes.
TEST(SetPhoneInGPRSMode, WaitsForASlowAttachOnce) {
  kxsim::Profile profile = ProfileNamed("gprs-phone");
  profile.packet.attached = false;
  profile.packet.attachSeconds = 2;
  ScriptedDevice device(profile);
  KXModemProperties properties = {PLATFORM_GPRS, 19200, "", ""};
  EXPECT_TRUE(SetPhoneInGPRSMode(device.Modem(), &properties, "internet"));
  const std::vector<std::string> commands = device.Commands();
  EXPECT_EQ(std::count(commands.begin(), commands.end(), "AT+CGATT=1"), 1);
  EXPECT_EQ(device.Modem()->m_dwResponseTimeout, 1500u);
}

}  // namespace
