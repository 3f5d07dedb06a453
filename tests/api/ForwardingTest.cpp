#include <KXWAN/KXWAN.h>
#include <gtest/gtest.h>
#include <tests/support/ScriptedDevice.h>

#include <functional>

namespace {

// On a device that refuses everything, the call gives this result and sends this command first.
void Expect(const std::string& command, long result,
            const std::function<long(CSWirelessModem&)>& call) {
  SCOPED_TRACE(command);
  ScriptedDevice device(Answers{});
  CSWirelessModem modem;
  modem.m_pModem = device.Modem();
  EXPECT_EQ(call(modem), result);
  modem.m_pModem = nullptr;  // it is the device's
  ASSERT_FALSE(device.Commands().empty());
  EXPECT_EQ(device.Commands().front(), command);
}

TEST(Forwarding, HandsTheOpenDeviceOn) {
  ModemInfo i = {};
  KXModemProperties properties = {};
  properties.dwDeviceType = PLATFORM_GPRS;
  unsigned long baud = 0;
  long length = 0;
  Expect("AT+CBC?", 0, [&](auto& m) { return m.GetBatteryLevelFromDevice(&i); });
  Expect("AT+CSQ?", 0, [&](auto& m) { return m.GetSignalLevelFromDevice(&i); });
  Expect("ATE0V1", 1, [&](auto& m) { return m.GetManufacturerString(&i); });
  Expect("AT+GMM", 1, [&](auto& m) { return m.GetModelString(&i); });
  Expect("AT+CAD?", 0, [&](auto& m) { return m.GetModemCoverage(&i), 0; });
  Expect("AT+CGATT=?", 0, [&](auto& m) { return m.GSMCapabilities(&i), 0; });
  Expect("AT+GCAP", 1, [&](auto& m) { return m.GetCapabilitiesKey(&i); });
  Expect("AT+GMR", 0, [&](auto& m) { return m.GetModemVersion(&i), 0; });
  Expect("ATE0V1", 1, [&](auto& m) { return m.GetModemData(&i); });
  Expect("AT+IPR=?", 1, [&](auto& m) { return m.DetectModemBaudRate(PLATFORM_GPRS, baud); });
  Expect("AT+CGATT?", 0, [&](auto& m) { return m.PrepareDeviceForConnection(&properties, "a"); });
  Expect("AT+CMEE=1;+CPIN?", 0, [&](auto& m) { return m.IsPasswordRequired(&length); });
  Expect(R"(AT+CPIN="1234")", 1008, [](auto& m) { return m.SetPIN("1234", 1); });
  Expect(R"(AT+CPIN="8765","1234")", 1008, [](auto& m) { return m.SetPINPUK("8765", "1234", 1); });
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
