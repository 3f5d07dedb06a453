#include <KXWAN/modem/CSModem.h>
#include <gtest/gtest.h>
#include <sys/time.h>
#include <tests/support/BusyMachine.h>
#include <tests/support/ScriptedDevice.h>
#include <tests/support/TestLog.h>

#include <chrono>
#include <csignal>
#include <cstring>

namespace {

using Lines = std::vector<std::string>;

struct OpenCase {
  const char* name;
  int deviceSpeed;          // 0: it answers nowhere
  std::string probeAnswer;  // to ATE0V1
  bool moves;               // whether AT+IPR= is obeyed
  unsigned long mask;
  unsigned long optimum;
  bool opened;
  unsigned long finalSpeed;
  Lines commands;  // that reach the device
  Lines logged;    // the AutoBaud records
};

OpenCase Of(const char* name, int deviceSpeed, const char* probeAnswer, bool moves,
            unsigned long mask, unsigned long optimum, bool opened, unsigned long finalSpeed,
            Lines commands, Lines logged) {
  return {name,       deviceSpeed,         probeAnswer,      moves, mask, optimum, opened,
          finalSpeed, std::move(commands), std::move(logged)};
}

const OpenCase kCases[] = {
    Of("answers at the optimum", 115200, "OK", true, 30, 115200, true, 115200, {"ATE0V1"},
       {"Set to optimum baud - 115200", "Device at proper baud - 115200"}),
    Of("radio off", 57600, "ERROR", true, 0, 57600, true, 57600, {"ATE0V1", "AT+CFUN=1"},
       {"Set to optimum baud - 57600", "Device at proper baud - 57600"}),
    Of("an equipment error is an answer too", 57600, "+CME ERROR: 10", true, 0, 57600, true, 57600,
       {"ATE0V1"}, {"Set to optimum baud - 57600", "Device at proper baud - 57600"}),
    Of("silent and nothing to search", 0, "OK", true, 0, 57600, true, 57600, {},
       {"Set to optimum baud - 57600"}),
    Of("silent at every speed, in the order of the search", 0, "OK", true, 0x1F, 115200, false,
       9600, {},
       {"Set to optimum baud - 115200", "Searching on baud - 19200", "Searching on baud - 38400",
        "Searching on baud - 57600", "Searching on baud - 9600"}),
    Of("found and moved", 38400, "OK", true, 30, 115200, true, 115200,
       {"ATE0V1", "AT+IPR=115200", "ATE0V1"},
       {"Set to optimum baud - 115200", "Searching on baud - 19200", "Searching on baud - 38400",
        "Changed to optimum baud - 115200", "Device reset to baud - 115200"}),
    Of("found only with the radio off: no AT+CFUN", 19200, "ERROR", true, 2, 115200, true, 115200,
       {"ATE0V1", "AT+IPR=115200", "ATE0V1"},
       {"Set to optimum baud - 115200", "Searching on baud - 19200",
        "Changed to optimum baud - 115200", "Device reset to baud - 115200"}),
    Of("says OK and stays where it is", 19200, "OK", false, 2, 115200, false, 115200,
       {"ATE0V1", "AT+IPR=115200"},
       {"Set to optimum baud - 115200", "Searching on baud - 19200",
        "Changed to optimum baud - 115200"}),
    Of("an optimum that no line knows", 19200, "OK", true, 2, 12345, false, 19200,
       {"ATE0V1", "AT+IPR=12345"}, {"Searching on baud - 19200"}),
};

kxsim::Profile DeviceOf(const OpenCase& row) {
  kxsim::Profile profile =
      kxsim::ScriptedProfile({{"ATE0V1", row.probeAnswer}, {"AT+IPR=115200", "OK"}});
  profile.line.autobaud = false;
  profile.line.baud = row.deviceSpeed == 0 ? 300 : row.deviceSpeed;
  profile.line.moves = row.moves;
  profile.faults = {{.kind = "late", .at = 1, .ms = 1400, .text = ""}};
  return profile;
}

// Two commands that are answered, one late and one at once. No delay is unusual then behind an
// answer that never comes, and on a busy machine it may be any.
void AcquaintWithDelays(const OpenCase& row, kxsim::SimulatedDevice& device, CSModem& modem) {
  modem.m_dwResponseTimeout = 20000;
  modem.m_pSerial->Open(device.Path().c_str());
  modem.m_pSerial->SetDataFormat(static_cast<unsigned long>(row.deviceSpeed), -1, -1, -1);
  int result = -1;
  CString response;
  for (int i = 0; i < 2; ++i) modem.SendCommandGetResponse("AT\r", result, response);
  modem.m_pSerial->Close();
  device.ClearCommands();
}

Lines AutoBaudRecords() {
  const std::string log = WithoutStamps(TakeLog());
  const std::string prefix = "CSModem::AutoBaud() - ";
  Lines lines;
  for (size_t at = log.find(prefix); at != std::string::npos; at = log.find(prefix, at)) {
    at += prefix.size();
    lines.push_back(log.substr(at, log.find('\n', at) - at));
  }
  return lines;
}

void PrintTo(const OpenCase& row, std::ostream* out) { *out << row.name; }

class OpenDeviceFastOf : public testing::TestWithParam<OpenCase> {};

TEST_P(OpenDeviceFastOf, FindsTheSpeedAndMovesTheDevice) {
  const OpenCase& row = GetParam();
  OnABusyMachine([&] {
    kxsim::SimulatedDevice device(DeviceOf(row));
    CSModem modem;
    modem.m_nRetries = 1;
    if (row.deviceSpeed != 0) AcquaintWithDelays(row, device, modem);
    modem.m_dwResponseTimeout = row.deviceSpeed == 0 ? 60 : 3000;
    TakeLog();
    EXPECT_EQ(modem.OpenDeviceFast(device.Path().c_str(), row.mask, row.optimum), row.opened);
    EXPECT_EQ(AutoBaudRecords(), row.logged);
    EXPECT_EQ(device.Commands(), row.commands);
    unsigned long speed = 0;
    EXPECT_TRUE(modem.m_pSerial->GetDataFormat(&speed));
    EXPECT_EQ(speed, row.finalSpeed);
  });
}

INSTANTIATE_TEST_SUITE_P(Device, OpenDeviceFastOf, testing::ValuesIn(kCases));

TEST(OpenDeviceFast, FailsAtOnceWithoutAPort) {
  CSModem modem;
  EXPECT_FALSE(modem.OpenDeviceFast("/dev/no-such-port", 0, 115200));
  EXPECT_EQ(modem.m_pSerial->fd, -1);
}

// Whatever signals come.
TEST(OpenDeviceFast, WaitsOnceForACardToSettle) {
  using Clock = std::chrono::steady_clock;
  kxsim::SimulatedDevice device(kxsim::ScriptedProfile({}));
  struct sigaction action = {};
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, nullptr);
  struct itimerval timer = {{0, 100000}, {0, 100000}};
  setitimer(ITIMER_REAL, &timer, nullptr);
  KXModemSetPCCardOpenDelayFlag();
  for (const bool waits : {true, false}) {
    CSModem modem;
    const Clock::time_point start = Clock::now();
    EXPECT_TRUE(modem.OpenDeviceFast(device.Path().c_str(), 0, 19200));
    EXPECT_EQ(Clock::now() - start >= std::chrono::seconds(2), waits);
  }
  timer = {};
  setitimer(ITIMER_REAL, &timer, nullptr);
}

struct OptionCase {
  const char* manufacturer;
  const char* model;
  const char* answer;
  bool succeeded;
  Lines commands;
};

const OptionCase kOptions[] = {
    {"Sierra Wireless", "AC860", "OK", true, {"AT!UARTONLY"}},
    {"Sierra Wireless, Inc.", "AirCard AC850 x", "ERROR", true, {"AT!UARTONLY"}},
    {"Sierra", "AC860", "(silence)", false, {"AT!UARTONLY"}},
    {"Sierra Wireless", "AC750", "OK", true, {}},
    {"sierra", "AC860", "OK", true, {}},
    {"Novatel", "AC860", "OK", true, {}},
};

TEST(InitModemOptions, SendsWhatTheDeviceNeeds) {
  for (const OptionCase& row : kOptions) {
    SCOPED_TRACE(std::string(row.manufacturer) + " " + row.model);
    ScriptedDevice device(Answers{{"AT!UARTONLY", row.answer}});
    KXModemProperties properties = {};
    std::strcpy(properties.szManufacturer, row.manufacturer);
    std::strcpy(properties.szModel, row.model);
    EXPECT_EQ(device.Modem()->InitModemOptions("", &properties), row.succeeded);
    EXPECT_EQ(device.Commands(), row.commands);
  }
}

}  // namespace
