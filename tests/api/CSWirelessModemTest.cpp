#include <KXWAN/api/CSWirelessModem.h>
#include <gtest/gtest.h>
#include <tests/support/BusyMachine.h>
#include <tests/support/ScriptedDevice.h>
#include <tests/support/SideBySide.h>

#include <cstring>

namespace {

using Lines = std::vector<std::string>;

kxsim::Profile At(int speed, const Answers& answers = {}) {
  kxsim::Profile profile = kxsim::ScriptedProfile(answers);
  profile.line.autobaud = false;
  profile.line.baud = speed;
  return profile;
}

void Hurry(CSWirelessModem& modem) {
  modem.m_pModem->m_nRetries = 1;
  modem.m_pModem->m_dwResponseTimeout = 4000;
}

TEST(CSWirelessModem, IsClosedOrOpen) {
  kxsim::SimulatedDevice device(At(19200));
  CSWirelessModem modem;
  modem.Close();
  EXPECT_FALSE(modem.Open("/dev/no-such-port"));
  EXPECT_EQ(modem.m_pModem, nullptr);
  EXPECT_TRUE(modem.Open(device.Path().c_str()));
  const CSModem* open = modem.m_pModem;
  KXModemProperties properties = {};
  EXPECT_FALSE(modem.Open(device.Path().c_str()));
  EXPECT_FALSE(modem.OpenDevice(device.Path().c_str(), &properties));
  EXPECT_EQ(modem.m_pModem, open);
  EXPECT_TRUE(device.Commands().empty());
  modem.Close();
  modem.Close();
  EXPECT_EQ(modem.m_pModem, nullptr);
}

struct DetectCase {
  const char* name;
  int deviceSpeed;
  unsigned long found;
  CHandsetPlatform platform;
};

const DetectCase kDetectCases[] = {
    {"19200", 19200, 19200, PLATFORM_GSM},
    {"230400", 230400, 230400, PLATFORM_GSM},
    {"9600", 9600, 9600, PLATFORM_GSM},
    {"at a speed that is not tried", 38400, 9600, PLATFORM_UNKNOWN},
};

TEST(DetectModem, TriesTheSpeedsInTurn) {
  SideBySide(kDetectCases, [](const DetectCase& row) {
    OnABusyMachine([&] {
      kxsim::SimulatedDevice device(At(row.deviceSpeed, {{"AT+GCAP", "+CGSM"}}));
      CSWirelessModem modem;
      ASSERT_TRUE(modem.Open(device.Path().c_str()));
      Hurry(modem);
      if (row.platform == PLATFORM_UNKNOWN) modem.m_pModem->m_dwResponseTimeout = 60;
      unsigned long baud = 0;
      EXPECT_EQ(modem.DetectModem(baud), row.platform);
      EXPECT_EQ(baud, row.found);
    });
  });
}

struct CardCase {
  const char* manufacturer;
  const char* model;
  CHandsetPlatform platform;
};

TEST(DetectModem, CorrectsWhatSonyEricssonCardsSay) {
  for (const CardCase& row :
       {CardCase{"SONY ERICSSON", "gc83", PLATFORM_GSM | PLATFORM_GPRS | PLATFORM_EDGE},
        CardCase{"SONY ERICSSON", "GC83", PLATFORM_GSM},
        CardCase{"SONY ERICSSON", "GC75", PLATFORM_GPRS},
        CardCase{"SONY ERICSSON", "gc8 GC75", PLATFORM_GPRS},
        CardCase{"Sony Ericsson", "GC75", PLATFORM_GSM}}) {
    SCOPED_TRACE(std::string(row.manufacturer) + " " + row.model);
    kxsim::SimulatedDevice device(
        At(19200, {{"AT+GCAP", "+CGSM"}, {"AT+GMI", row.manufacturer}, {"AT+GMM", row.model}}));
    CSWirelessModem modem;
    ASSERT_TRUE(modem.Open(device.Path().c_str()));
    unsigned long baud = 0;
    EXPECT_EQ(modem.DetectModem(baud), row.platform);
  }
}

struct OpenCase {
  const char* name;
  CHandsetPlatform type;
  const char* manufacturer;
  int deviceSpeed;
};

// Each speed that is searched in vain costs 4.5 seconds, so few rows are.
const OpenCase kOpenCases[] = {
    {"1xRTT may be searched", PLATFORM_1XRTT | PLATFORM_GPRS, "", 19200},
    {"Sony Ericsson may be searched at 9600 only", PLATFORM_GPRS, "Sony Ericsson", 9600},
};

TEST(OpenDevice, SearchesByThePlatform) {
  SideBySide(kOpenCases, [](const OpenCase& row) {
    OnABusyMachine([&] {
      kxsim::SimulatedDevice device(At(row.deviceSpeed, {{"AT+IPR=115200", "OK"}}));
      KXModemProperties properties = {row.type, 115200, "", ""};
      std::strcpy(properties.szManufacturer, row.manufacturer);
      CSWirelessModem modem;
      EXPECT_TRUE(modem.OpenDevice(device.Path().c_str(), &properties));
      EXPECT_EQ(device.Commands(), (Lines{"ATE0V1", "AT+IPR=115200", "ATE0V1"}));
    });
  });
}

TEST(OpenDevice, IsClosedAgainAfterAFailure) {
  kxsim::SimulatedDevice device(At(115200, {{"AT!UARTONLY", "(silence)"}}));
  KXModemProperties properties = {PLATFORM_1XRTT, 115200, "Sierra", "AC850"};
  CSWirelessModem modem;
  EXPECT_FALSE(modem.OpenDevice(device.Path().c_str(), &properties));
  EXPECT_EQ(modem.m_pModem, nullptr);
  EXPECT_TRUE(modem.Open(device.Path().c_str()));
}

struct CommandCase {
  std::string command;
  std::string sent;
  int result;
  int size;
  std::string reply;  // "old" where it is left untouched
};

TEST(SendATCommandAndGetReply, EndsTheCommandAndCutsTheReply) {
  const std::string longest(254, 'X');
  kxsim::SimulatedDevice device(At(19200, {{"AT", "OK"},
                                           {"AT+GMM", "a model"},
                                           {"AT+CPIN?", "+CME ERROR: 10"},
                                           {"AT+SILENT", "(silence)"}}));
  CSWirelessModem modem;
  ASSERT_TRUE(modem.Open(device.Path().c_str()));
  Hurry(modem);
  for (const CommandCase& row :
       {CommandCase{"AT", "AT", 0, 64, ""}, CommandCase{"AT\r", "AT", 0, 64, ""},
        CommandCase{"AT+GMM", "AT+GMM", 0, 64, "a model"},
        CommandCase{"AT+GMM", "AT+GMM", 0, 3, "a "}, CommandCase{"AT+GMM", "AT+GMM", 0, 1, ""},
        CommandCase{"AT+GMM", "AT+GMM", 0, 0, "old"},
        CommandCase{"AT+CPIN?", "AT+CPIN?", 101, 64, "10"}, CommandCase{"AT+X", "AT+X", 4, 64, ""},
        CommandCase{"AT" + longest, ("AT" + longest).substr(0, 254), 4, 64, ""},
        CommandCase{"AT+SILENT", "AT+SILENT", 100, 64, "old"}}) {
    SCOPED_TRACE(row.command);
    device.ClearCommands();
    char reply[64] = "old";
    EXPECT_EQ(modem.SendATCommandAndGetReply(row.command.c_str(), reply, row.size), row.result);
    EXPECT_EQ(reply, row.reply);
    EXPECT_EQ(device.Commands(), Lines{row.sent});
  }
}

TEST(GetModelAndManufacturer, FillsPlainBuffersAndCutsToSizes) {
  kxsim::SimulatedDevice device(At(19200, {{"AT+GMM", "modelname"}, {"AT+GMI", "maker"}}));
  CSWirelessModem modem;
  ASSERT_TRUE(modem.Open(device.Path().c_str()));
  char model[64] = "";
  char manufacturer[64] = "";
  EXPECT_TRUE(modem.GetModelAndManufacturer(model, manufacturer));
  EXPECT_STREQ(model, "modelname");
  EXPECT_STREQ(manufacturer, "maker");
  EXPECT_TRUE(modem.GetModelAndManufacturer(model, 6, manufacturer, 0));
  EXPECT_STREQ(model, "model");
  EXPECT_STREQ(manufacturer, "maker");
}

}  // namespace
