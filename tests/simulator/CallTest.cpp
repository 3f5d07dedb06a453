#include <gtest/gtest.h>
#include <signal.h>
#include <simulator/SimulatedDevice.h>
#include <tests/support/Host.h>
#include <tests/support/ThreadSanitizer.h>

#include <list>
#include <string>

namespace kxsim {
namespace {

const std::string kOk = "\r\nOK\r\n";
const std::string kConnect = "\r\nCONNECT 19200\r\n";
const std::string kNoCarrier = "\r\nNO CARRIER\r\n";
const std::string kError = "\r\nERROR\r\n";
constexpr const char* kGprs =
    "families = [\"gsm\", \"gprs\"]\n[line]\necho = false\n[packet]\ncontexts = { 1 = \"a\" }\n";
constexpr const char* kCdma = "families = [\"cdma\"]\n[line]\necho = false\n";

struct Dial {
  const char* toml;
  const char* line;
  std::string answer;
};

const Dial kDials[] = {
    {kGprs, "ATD*99#", kConnect},
    {kGprs, "ATDT*99***1#", kConnect},
    {kGprs, "atd*99***2#", kError},
    {kGprs, "ATD*99***x#", kError},
    {kGprs, "ATD*99", kError},
    {kGprs, "ATD5551234", kNoCarrier},
    {kGprs, "ATX0D*99#", "\r\nCONNECT\r\n"},
    {kGprs, "ATV0DT*99#", "1\r"},
    {kGprs, "AT+CFUN=0;D*99#", kNoCarrier},
    {kCdma, "ATDT#777", kConnect},
    {kCdma, "ATD*99#", kNoCarrier},
    {"scripted = true\n[replies]\n\"ATD1\" = \"CONNECT\"", "ATD1", "\r\nCONNECT\r\n"},
};

TEST(Call, IsMadeAsFarAsTheDeviceAllows) {
  for (const Dial& row : kDials) {
    SCOPED_TRACE(row.line);
    SimulatedDevice device(ProfileOf(row.toml));
    Host host(device.Path());
    EXPECT_EQ(host.Ask(std::string(row.line) + "\r", row.answer), row.answer);
    // A call that is up sends "AT" back; a device that takes commands says something else.
    const bool up = row.answer.find("CONNECT") != std::string::npos || row.answer == "1\r";
    EXPECT_EQ(host.Ask("AT\r", "AT\r") == "AT\r", up);
  }
}

TEST(Call, CarriesDataAndComesBackFromIt) {
  SimulatedDevice device(ProfileOf(kGprs));
  Host host(device.Path());
  // A guard time of 0, so that nothing has to be waited for.
  EXPECT_EQ(host.Ask("ATS12=0\r", kOk), kOk);
  EXPECT_EQ(host.Ask("ATO\r", kNoCarrier), kNoCarrier);
  EXPECT_EQ(host.Ask("ATD*99***1#\r", kConnect), kConnect);
  const std::string data("\0\r\nAT\xFF~", 7);
  EXPECT_EQ(host.Ask(data, data), data);
  EXPECT_EQ(host.Ask("+++", "+++" + kOk), "+++" + kOk);
  EXPECT_EQ(host.Ask("ATD*99#\r", kError), kError);
  EXPECT_EQ(host.Ask("ATO\r", kConnect), kConnect);
  EXPECT_EQ(host.Ask("++x+", "++x+"), "++x+");
  EXPECT_EQ(host.Ask("+++", "+++" + kOk), "+++" + kOk);
  EXPECT_EQ(host.Ask("ATH\r", kOk), kOk);
  EXPECT_EQ(host.Ask("ATO\r", kNoCarrier), kNoCarrier);
}

TEST(Call, NeedsSilenceAroundTheEscape) {
  SimulatedDevice device(ProfileOf(kGprs));
  Host host(device.Path());
  EXPECT_EQ(host.Ask("ATD*99#\r", kConnect), kConnect);
  EXPECT_EQ(host.Ask("+++", "+++"), "+++");
  EXPECT_EQ(host.Ask("AT\r", "AT\r"), "AT\r");
  host.Close();
  // The second host finds a device that takes commands: the first has dropped the call.
  Host second(device.Path());
  EXPECT_EQ(second.Ask("ATS12=255S2=128D*99#\r", kConnect), kConnect);
  EXPECT_EQ(second.Ask("+++", "+++"), "+++");
}

TEST(Call, LastsAsLongAsAHostHasTheLineOpen) {
  SimulatedDevice device(ProfileOf(kGprs));
  Host host(device.Path());
  EXPECT_EQ(host.Ask("ATD*99#\r", kConnect), kConnect);
  for (int i = 0; i < 20; ++i) {
    const int others[] = {open(device.Path().c_str(), O_RDWR | O_NOCTTY),
                          open(device.Path().c_str(), O_RDWR | O_NOCTTY)};
    for (const int other : others) {
      close(other);
      ASSERT_EQ(host.Ask("AT\r", "AT\r"), "AT\r");
    }
  }
}

struct Command {
  const char* command;
  std::string sent;
  std::string answer;
};

const Command kCommands[] = {
    {"echo far", "", "far\n" + kNoCarrier},
    {"head -c 3", "abcdef", "abc" + kNoCarrier},
    {"read -r line; echo \"<$line>\"", "x\n", "<x>\n" + kNoCarrier},
    {"exit 3", "", kNoCarrier},
    {"/nowhere/program 2>/dev/null", "", kNoCarrier},
};

TEST(Call, ReachesACommandAndEndsWithIt) {
  for (const Command& row : kCommands) {
    SCOPED_TRACE(row.command);
    DeviceOptions options;
    options.onConnect = row.command;
    SimulatedDevice device(ProfileOf(kGprs), std::move(options));
    Host host(device.Path());
    EXPECT_EQ(host.Ask("ATD*99#\r", kConnect), kConnect);
    EXPECT_EQ(host.Ask(row.sent, row.answer), row.answer);
    EXPECT_EQ(host.Ask("AT\r", kOk), kOk);
  }
}

// Each device has a loop and a thread of its own, but the process has one SIGCHLD.
TEST(Call, ReachesCommandsOfManyDevicesAndGivesSigchldBack) {
  struct sigaction own = {};
  own.sa_handler = [](int) {};
  struct sigaction before;
  sigaction(SIGCHLD, &own, &before);
  {
    std::list<SimulatedDevice> devices;
    std::list<Host> hosts;
    for (int i = 0; i < 8; ++i) {
      DeviceOptions options;
      options.onConnect = "read -r line; echo \"<$line>\"";
      const SimulatedDevice& device = devices.emplace_back(ProfileOf(kGprs), std::move(options));
      EXPECT_EQ(hosts.emplace_back(device.Path()).Ask("ATD*99#\r", kConnect), kConnect);
    }
    for (Host& host : hosts) host.Send("x\n");
    const std::string answer = "<x>\n" + kNoCarrier;
    for (Host& host : hosts) EXPECT_EQ(host.Read(answer.size()), answer);
  }
  struct sigaction after;
  sigaction(SIGCHLD, &before, &after);
  EXPECT_EQ(after.sa_handler, own.sa_handler);
}

TEST(Call, HoldsACommandBackForAHostThatDoesNotRead) {
  DeviceOptions options;
  options.onConnect = "head -c 1000000 /dev/zero | tr '\\0' x";
  SimulatedDevice device(ProfileOf(kGprs), std::move(options));
  Host host(device.Path());
  EXPECT_EQ(host.Ask("ATD*99#\r", kConnect), kConnect);
  const std::string answer = std::string(1'000'000, 'x') + kNoCarrier;
  EXPECT_TRUE(host.Read(answer.size()) == answer);
}

TEST(Call, IsBrokenOffByAByte) {
  SimulatedDevice device(
      ProfileOf("[line]\necho = false\n[replies]\n\"ATD1\" = { text = \"CONNECT\", latency = "
                "600000 }"));
  Host host(device.Path());
  host.Send("ATD1\r\n");
  EXPECT_EQ(host.Ask("x", kNoCarrier), kNoCarrier);
  EXPECT_EQ(host.Ask("\rAT\r", kOk), kOk);
}

}  // namespace
}  // namespace kxsim
