#include <KXWAN/KXWAN.h>
#include <gtest/gtest.h>
#include <tests/support/ScriptedDevice.h>

#include <cstdlib>
#include <new>

namespace {

thread_local long g_liveBlocks = 0;

void* Count(void* block) {
  if (block != nullptr) ++g_liveBlocks;
  return block;
}

void Uncount(void* block) {
  if (block != nullptr) --g_liveBlocks;
  std::free(block);
}

}  // namespace

void* operator new(size_t size) { return Count(std::malloc(size)); }
void* operator new[](size_t size) { return Count(std::malloc(size)); }
void* operator new(size_t size, const std::nothrow_t&) noexcept { return Count(std::malloc(size)); }
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
  return Count(std::malloc(size));
}
void operator delete(void* block) noexcept { Uncount(block); }
void operator delete[](void* block) noexcept { Uncount(block); }
void operator delete(void* block, size_t) noexcept { Uncount(block); }
void operator delete[](void* block, size_t) noexcept { Uncount(block); }

namespace {

struct Case {
  const char* name;
  void (*round)(CSWirelessModem& modem, ModemInfo& info);
};

const Case kCases[] = {
    {"signal",
     [](CSWirelessModem& modem, ModemInfo& info) { modem.GetSignalLevelFromDevice(&info); }},
    {"battery",
     [](CSWirelessModem& modem, ModemInfo& info) { modem.GetBatteryLevelFromDevice(&info); }},
    {"coverage", [](CSWirelessModem& modem, ModemInfo& info) { modem.GetModemCoverage(&info); }},
    {"everything", [](CSWirelessModem& modem, ModemInfo& info) { modem.GetModemData(&info); }},
    {"detection",
     [](CSWirelessModem& modem, ModemInfo&) {
       unsigned long baud = 0;
       modem.DetectModem(baud);
     }},
    {"commands",
     [](CSWirelessModem& modem, ModemInfo&) {
       char reply[64];
       modem.SendATCommandAndGetReply("AT+CGMR", reply, sizeof reply);
     }},
    {"preparation",
     [](CSWirelessModem& modem, ModemInfo&) {
       KXModemProperties properties = {PLATFORM_1XRTT, 115200, "", "TX-25B"};
       modem.PrepareDeviceForConnection(&properties, "internet");
     }},
    {"SIM",
     [](CSWirelessModem& modem, ModemInfo&) {
       long length = 0;
       modem.IsPasswordRequired(&length);
       modem.SetPIN("1234", 1);
       kxwan::ReadSimState(modem.m_pModem);
     }},
    {"companions",
     [](CSWirelessModem& modem, ModemInfo&) {
       kxwan::BatteryReading battery = {};
       kxwan::ReadBattery(modem.m_pModem, battery);
     }},
    {"failing opens",
     [](CSWirelessModem&, ModemInfo&) {
       CSWirelessModem other;
       other.Open("/dev/no-such-port");
     }},
};

// A connection manager polls for months.
TEST(Growth, OfAProgramThatPollsIsNone) {
  ScriptedDevice scripted(Answers{{"AT+GMI", "\"ACME\""},
                                  {"AT+GMM", "\"a model\""},
                                  {"AT+CSQ?", "+CSQ: 20,99"},
                                  {"AT+CBC?", "+CBC: 0,80"},
                                  {"AT+CAD?", "+CAD: 1"},
                                  {"AT+GCAP", "+GCAP: IS-135"},
                                  {"AT+CGMR", "version 1"},
                                  {"AT+CMEE=1;+CPIN?", "+CME ERROR: 11"},
                                  {"AT+CPWD=?", "+CPWD: (\"SC\",8)"},
                                  {"AT+CPIN=\"1234\"", "OK"}});
  scripted.Modem()->m_pSerial->Close();
  CSWirelessModem modem;
  ASSERT_TRUE(modem.Open(scripted.Path().c_str()));
  ModemInfo info = ModemInfo();
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.name);
    row.round(modem, info);
    const long before = g_liveBlocks;
    for (int i = 0; i < 20; ++i) row.round(modem, info);
    EXPECT_EQ(g_liveBlocks, before);
  }
}

}  // namespace
