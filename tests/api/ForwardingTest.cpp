#include <KXWAN/KXWAN.h>
#include <gtest/gtest.h>
#include <tests/support/ScriptedDevice.h>

#include <functional>

namespace {

struct Call {
  CSWirelessModem modem;
  ModemInfo info = {};
  KXModemProperties properties = {};
  unsigned long baud = 0;
  long length = 0;
};

struct Case {
  const char* method;
  std::string firstCommand;
  long result;  // what it gives when the device refuses everything
  std::function<long(Call&)> run;
};

const Case kCases[] = {
    {"GetBatteryLevelFromDevice", "AT+CBC?", 0,
     [](Call& c) { return c.modem.GetBatteryLevelFromDevice(&c.info); }},
    {"GetSignalLevelFromDevice", "AT+CSQ?", 0,
     [](Call& c) { return c.modem.GetSignalLevelFromDevice(&c.info); }},
    {"GetManufacturerString", "ATE0V1", 1,
     [](Call& c) { return c.modem.GetManufacturerString(&c.info); }},
    {"GetModelString", "AT+GMM", 1, [](Call& c) { return c.modem.GetModelString(&c.info); }},
    {"GSMCapabilities", "AT+CGATT=?", 0,
     [](Call& c) { return c.modem.GSMCapabilities(&c.info), 0; }},
    {"GetCapabilitiesKey", "AT+GCAP", 1,
     [](Call& c) { return c.modem.GetCapabilitiesKey(&c.info); }},
    {"GetModemCoverage", "AT+CAD?", 0,
     [](Call& c) { return c.modem.GetModemCoverage(&c.info), 0; }},
    {"GetModemVersion", "AT+GMR", 0, [](Call& c) { return c.modem.GetModemVersion(&c.info), 0; }},
    {"GetModemData", "ATE0V1", 1, [](Call& c) { return c.modem.GetModemData(&c.info); }},
    {"DetectModemBaudRate", "AT+IPR=?", 1,
     [](Call& c) { return c.modem.DetectModemBaudRate(PLATFORM_GPRS, c.baud); }},
    {"PrepareDeviceForConnection", "AT+CGATT?", 0,
     [](Call& c) {
       c.properties.dwDeviceType = PLATFORM_GPRS;
       return c.modem.PrepareDeviceForConnection(&c.properties, "web");
     }},
    {"IsPasswordRequired", "AT+CMEE=1;+CPIN?", 0,
     [](Call& c) { return c.modem.IsPasswordRequired(&c.length); }},
    {"SetPIN", R"(AT+CPIN="1234")", 1008, [](Call& c) { return c.modem.SetPIN("1234", 1); }},
    {"SetPINPUK", R"(AT+CPIN="12345678","1234")", 1008,
     [](Call& c) { return c.modem.SetPINPUK("12345678", "1234", 1); }},
};

TEST(Forwarding, HandsTheOpenDeviceOn) {
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.method);
    ScriptedDevice device(Answers{});
    Call call;
    call.modem.m_pModem = device.Modem();
    EXPECT_EQ(row.run(call), row.result);
    call.modem.m_pModem = nullptr;  // it is the device's
    ASSERT_FALSE(device.Commands().empty());
    EXPECT_EQ(device.Commands().front(), row.firstCommand);
  }
}

TEST(Forwarding, NeedsNoObjectForWhatNeedsNoDevice) {
  SetModemError(102);
  EXPECT_EQ(CSWirelessModem::GetLastModemError(), 102u);
  EXPECT_EQ(CSWirelessModem::GetLastModemError(), 0u);
  EXPECT_TRUE(CSWirelessModem::DoesGPRSDeviceRequire57600("Motorola", ""));
  char number[9];
  CSWirelessModem::GetGPRSDialedNumber("SIEMENS", "", number, sizeof number);
  EXPECT_STREQ(number, "*99***2#");
}

}  // namespace
