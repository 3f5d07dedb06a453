#include <KXWAN/connect/ConnectError.h>
#include <KXWAN/connect/Connection.h>
#include <KXWAN/connect/GprsSetup.h>
#include <KXWAN/connect/OneXSetup.h>
#include <KXWAN/foundation/LastError.h>
#include <KXWAN/handset/CHandsetPlatform.h>
#include <gtest/gtest.h>
#include <tests/support/Dialogue.h>

#include <cstdio>

namespace {

struct Case {
  const char* device;
  CHandsetPlatform platform;
  const char* manufacturer;
  const char* model;
  const char* apn;
  unsigned long error;  // 0: prepared
  Answers dialogue;     // all that is sent, in order, and its answers
};

void PrintTo(const Case& row, std::ostream* out) { *out << row.device; }

const std::string kLongApn(2000, 'a');
const std::string kLongestApn(100, 'a');

// A context that is accepted costs half a second, so each row is a test of its own and they run in
// parallel.
const Case kCases[] = {
    {"Motorola L Series",
     PLATFORM_GPRS,
     "Motorola Inc",
     "L Series Phone",
     "web",
     0,
     {{"AT+CGATT?", "+CGATT: 1"},
      {R"(AT+CGDCONT=1,"IP","web")", "OK"},
      {"AT+CGQMIN=1,0,0,0,0,0;+CGQREQ=1,0,0,0,0,0", "OK"}}},
    {"another Motorola, whose EDGE does not matter",
     PLATFORM_GPRS | PLATFORM_EDGE,
     "Motorola",
     "V60",
     "web",
     103,
     {{"AT+CGATT?", "+CGATT: 1"},
      {R"(AT+CGDCONT=3,"IP","web")", "OK"},
      {"AT+CGQMIN=3,0,0,0,0,0;+CGQREQ=3,0,0,0,0,0", "+CME ERROR: 3"}}},
    {"GTRAN",
     PLATFORM_UMTS,
     "GTRAN",
     "",
     "web",
     103,
     {{"AT+CGATT?", "+CGATT: 1"}, {R"(AT+CGDCONT=1,"IP","web")", "ERROR"}}},
    {"Sierra Wireless wants no quality of service",
     PLATFORM_GPRS,
     "Sierra Wireless",
     "",
     "web",
     0,
     {{"AT+CGATT?", "+CGATT: 1"}, {R"(AT+CGDCONT=1,"IP","web")", "OK"}}},
    {"Panasonic without EDGE",
     PLATFORM_GPRS,
     "Panasonic",
     "",
     "web",
     0,
     {{"AT+CGATT?", "+CGATT: 1"},
      {R"(AT+CGDCONT=1,"IP","web")", "OK"},
      {"AT+CGQMIN=1;+CGQREQ=1", "OK"}}},
    {"Novatel, whatever comes of its last command",
     PLATFORM_GPRS,
     "Novatel",
     "",
     "web",
     0,
     {{"AT+CGATT?", "+CGATT: 1"}, {R"(AT+CGDCONT=3,"IP","web")", "OK"}, {"AT+NWHFUN=0", "ERROR"}}},
    {"Nokia with EDGE",
     0x07,
     "Nokia",
     "",
     "web",
     0,
     {{"AT+CGATT?", "+CGATT: 1"},
      {R"(AT+CGDCONT=1,"IP","web")", "OK"},
      {"AT+CGEQMIN=1;+CGEQREQ=1", "OK"}}},
    {"SIEMENS",
     PLATFORM_EDGE,
     "SIEMENS",
     "",
     "web",
     0,
     {{"AT+CGATT?", "+CGATT: 1"},
      {R"(AT+CGDCONT=2,"IP","web")", "OK"},
      {"AT+CGQMIN=2,0,0,0,0,0;+CGQREQ=2,0,0,0,0,0", "OK"}}},
    {"nobody's, with an APN longer than any buffer",
     PLATFORM_GPRS,
     "",
     "",
     kLongApn.c_str(),
     103,
     {{"AT+CGATT?", "+CGATT: 1"}, {"AT+CGDCONT=3,\"IP\",\"" + kLongApn + "\"", "ERROR"}}},
    {"no APN", PLATFORM_GPRS, "", "", "", 0, {}},
    {"null APN", PLATFORM_GPRS, "", "", nullptr, 0, {}},
    {"does not tell whether it is attached",
     PLATFORM_GPRS,
     "",
     "",
     "web",
     100,
     {{"AT+CGATT?", "ERROR"}}},
    {"does not attach",
     PLATFORM_GPRS,
     "",
     "",
     "web",
     102,
     {{"AT+CGATT?", "+CGATT: 0"}, {"AT+CGATT=1", "+CME ERROR: 148"}}},

    {"Quick Net Connect before 1xRTT",
     PLATFORM_1XQNC | PLATFORM_1XRTT,
     "",
     "9155",
     "",
     0,
     {{"AT$QCMDR=2;$QCQNC=1", "OK"}}},
    {"Quick Net Connect with TX-25B, standard form",
     PLATFORM_1XQNC,
     "",
     "9150 TX-25B",
     "",
     0,
     {{"AT+CRM=0", "OK"}, {"AT$QCMDR=2;$QCQNC=1", "ERROR"}, {"AT+CRM=0;+CSO=12", "OK"}}},
    {"Quick Net Connect by Mobile IP",
     PLATFORM_1XQNC,
     "",
     "",
     "",
     0,
     {{"AT$QCMDR=2;$QCQNC=1", "ERROR"},
      {"AT+CRM=0;+CSO=12", "+CME ERROR: 4"},
      {"AT$QCMIP=1", "OK"}}},
    {"Sprint before 1xRTT, which sets no error",
     PLATFORM_1X_SPRINT | PLATFORM_1XRTT,
     "",
     "9155",
     "",
     0,
     {{"AT$QCMIP=2", "OK"}}},
    {"9155", 0x30, "", "AirCard 9155", "", 0, {{"AT$QCSCRM=1", "ERROR"}, {"AT$QCMDR=3", "OK"}}},
    {"9150 before TX-25B",
     PLATFORM_1XRTT,
     "",
     "TX-25B 9150",
     "",
     0,
     {{"AT$QCSCRM=1", "OK"}, {"AT$QCMDR=3", "OK"}}},
    {"TX-25B, 1xRTT before GPRS",
     PLATFORM_1XRTT | PLATFORM_GPRS,
     "",
     "TX-25B",
     "web",
     0,
     {{"AT+CRM=1", "OK"}, {"AT$QCMDR=3", "ERROR"}, {"AT+CRM=1;+CSO=33", "OK"}}},
    {"refuses every mode",
     PLATFORM_1XRTT,
     "",
     "",
     "",
     101,
     {{"AT$QCMDR=3", "ERROR"}, {"AT+CRM=1;+CSO=33", "ERROR"}, {"AT$QCMIP=2", "ERROR"}}},
    {"an equipment error is no ERROR",
     PLATFORM_1XRTT,
     "",
     "",
     "",
     100,
     {{"AT$QCMDR=3", "+CME ERROR: 4"}}},
    {"silent", PLATFORM_1XRTT, "", "", "", 100, {{"AT$QCMDR=3", "(silence)"}}},

    {"EV-DO alone", 0x1020, "", "9155", "web", 0, {}},
    {"plain GSM", PLATFORM_GSM, "Nokia", "", "web", 0, {}},
};

class PrepareDevice : public testing::TestWithParam<Case> {};

TEST_P(PrepareDevice, SendsWhatTheDeviceWants) {
  const Case& row = GetParam();
  KXModemProperties properties = {};
  properties.dwDeviceType = row.platform;
  std::snprintf(properties.szManufacturer, sizeof properties.szManufacturer, "%s",
                row.manufacturer);
  std::snprintf(properties.szModel, sizeof properties.szModel, "%s", row.model);
  ScriptedDevice device(row.dialogue);
  device.Modem()->m_nRetries = 1;
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
    device.Modem()->m_dwResponseTimeout = 900;
    EXPECT_FALSE(SetPhoneInGPRSMode(device.Modem(), &properties, "web"));
    EXPECT_EQ(device.Modem()->m_dwResponseTimeout, attached[8] == '1' ? 900u : 1500u);
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
  for (const std::string& apn : {std::string("a"), std::string("my-apn_1.net"), kLongestApn}) {
    EXPECT_TRUE(kxwan::IsApn(apn.c_str())) << apn;
  }
  for (const char* text : {"", "a\"b", "a\rb", "a\x7f", "caf\xc3\xa9"}) {
    EXPECT_FALSE(kxwan::IsApn(text)) << text;
  }
  EXPECT_FALSE(kxwan::IsApn((kLongestApn + "a").c_str()));
  EXPECT_FALSE(kxwan::IsApn(nullptr));
}

}  // namespace
