#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <simulator/SimulatedDevice.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <tests/support/Host.h>

#include <string>
#include <thread>

namespace kxsim {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kOk = "\r\nOK\r\n";
const std::string kError = "\r\nERROR\r\n";

// Whether the device hears the host: a device that does not says nothing, so a second line at a
// speed that it hears shows what it made of the first.
struct Hearing {
  const char* device;
  const char* toml;
  speed_t speed;
  bool heard;
};

const Hearing kHearings[] = {
    {"at its speed", "[line]\nbaud = 9600", B9600, true},
    {"at another", "[line]\nbaud = 9600", B19200, false},
    {"finds any speed", "[line]\nautobaud = true", B230400, true},
    {"finds those of its list", "[line]\nautobaud = true\nspeeds = [9600, 57600]", B57600, true},
    {"finds no others", "[line]\nautobaud = true\nspeeds = [9600, 57600]", B19200, false},
    {"speed 0 is 9600 to a UART", "[line]\nbaud = 9600", B0, true},
};

TEST(Line, IsHeardAtTheDevicesSpeedOnly) {
  for (const Hearing& row : kHearings) {
    SCOPED_TRACE(row.device);
    SimulatedDevice device(ProfileOf(row.toml));
    Host host(device.Path(), row.speed);
    host.Send("AT+FIRST\r");
    if (row.heard) {
      EXPECT_EQ(host.ReadTo(kError), "AT+FIRST\r" + kError);
    } else {
      EXPECT_EQ(host.Read(1, 50), "");
    }
    EXPECT_EQ(device.Commands().size(), row.heard ? 1U : 0U);
  }
}

TEST(Line, MovesWithTheSpeedCommand) {
  SimulatedDevice device(ProfileOf("[line]\necho = false\nspeeds = [9600, 19200]"));
  Host host(device.Path());
  EXPECT_EQ(host.Ask("AT+IPR=?\r", "\r\n+IPR: (),(9600,19200)\r\n" + kOk),
            "\r\n+IPR: (),(9600,19200)\r\n" + kOk);
  EXPECT_EQ(host.Ask("AT+IPR=115200\r", kError), kError);
  EXPECT_EQ(host.Ask("AT+IPR=9600\r", kOk), kOk);
  host.Send("AT+LOST\r");
  EXPECT_EQ(host.Read(1, 50), "");
  host.SetSpeed(B9600);
  EXPECT_EQ(host.Ask("AT\r", kOk), kOk);
  EXPECT_EQ(host.Ask("AT+IPR=0\r", kOk), kOk);
  host.SetSpeed(B19200);
  EXPECT_EQ(host.Ask("AT\r", kOk), kOk);
  EXPECT_THAT(device.Commands(),
              ElementsAre("AT+IPR=?", "AT+IPR=115200", "AT+IPR=9600", "AT", "AT+IPR=0", "AT"));
}

struct Mover {
  const char* device;
  const char* toml;
  bool moves;
};

const Mover kMovers[] = {
    {"a script that says OK", "scripted = true\n[replies]\n\"AT+IPR=9600\" = \"OK\"", true},
    {"one that says so and stays", "[line]\necho = false\nspeeds = [9600]\nmoves = false", false},
    {"a script that finds the speed by itself",
     "scripted = true\n[line]\nautobaud = true\n[replies]\n\"AT+IPR=9600\" = \"OK\"", false},
};

TEST(Line, StaysWhenTheDeviceOnlySaysSo) {
  for (const Mover& row : kMovers) {
    SCOPED_TRACE(row.device);
    SimulatedDevice device(ProfileOf(row.toml));
    Host host(device.Path());
    EXPECT_EQ(host.Ask("AT+IPR=9600\r", kOk), kOk);
    host.SetSpeed(row.moves ? B9600 : B19200);
    EXPECT_EQ(host.Ask("ATE0V1\r", kOk), kOk);
  }
}

// A terminal with the system's settings echoes, and turns "\n" to "\r\n" on the way out. Neither
// must make the device talk to itself.
TEST(Line, DoesNotTalkToItselfOnAFreshTerminal) {
  SimulatedDevice device(ProfileOf("[identity]\nmodel = \"X\"\n"));
  const int terminal = open(device.Path().c_str(), O_RDWR | O_NOCTTY);
  termios settings;
  tcgetattr(terminal, &settings);
  ASSERT_NE(settings.c_lflag & ECHO, 0U);
  cfsetspeed(&settings, B19200);
  tcsetattr(terminal, TCSANOW, &settings);
  for (const std::string command : {"AT+GMM", "AT+END"}) {
    ASSERT_EQ(write(terminal, (command + "\n").data(), 7), 7);
    const std::string end = command == "AT+END" ? "ERROR\n" : "OK\n";
    std::string got;
    char line[64];
    ssize_t length = 1;
    while (length > 0 && got != end) {
      length = read(terminal, line, sizeof line);
      got.assign(line, static_cast<size_t>(std::max<ssize_t>(length, 0)));
    }
  }
  EXPECT_THAT(device.Commands(), ElementsAre("AT+GMM", "AT+END"));
  close(terminal);
}

TEST(Line, StartsRawWhenAskedTo) {
  DeviceOptions options;
  options.rawTerminal = true;
  SimulatedDevice device(ProfileOf(""), std::move(options));
  const int terminal = open(device.Path().c_str(), O_RDWR | O_NOCTTY);
  termios settings;
  tcgetattr(terminal, &settings);
  EXPECT_EQ(settings.c_lflag & (ECHO | ICANON), 0U);
  EXPECT_EQ(settings.c_iflag & ICRNL, 0U);
  close(terminal);
}

TEST(Line, OutlivesAHostThatComesAndGoes) {
  SimulatedDevice device(ProfileOf("[line]\necho = false"));
  for (int i = 0; i < 20; ++i) {
    Host host(device.Path());
    EXPECT_EQ(host.Ask("AT\r", kOk), kOk);
    // Half a line stays on the line: the next host's first command begins anew all the same.
    EXPECT_TRUE(host.Send("xyz"));
  }
  EXPECT_EQ(device.Commands().size(), 20U);
}

TEST(Line, IsFreeAgainAfterAHostThatWantedItAlone) {
  SimulatedDevice device(ProfileOf(""));
  const int alone = open(device.Path().c_str(), O_RDWR | O_NOCTTY);
  ASSERT_EQ(ioctl(alone, TIOCEXCL), 0);
  close(alone);
  // Until the device has seen the close, root finds the claim there, and others are not let in.
  int claimed = 1;
  for (int i = 0; i < 100'000 && claimed != 0; ++i) {
    const int next = open(device.Path().c_str(), O_RDWR | O_NOCTTY);
    if (next >= 0) ioctl(next, TIOCGEXCL, &claimed);
    close(next);
    std::this_thread::yield();
  }
  EXPECT_EQ(claimed, 0);
}

TEST(Line, ShowsAHangUp) {
  SimulatedDevice device(ProfileOf(""));
  Host host(device.Path());
  device.HangUp();
  EXPECT_EQ(host.Read(1), "");
  EXPECT_FALSE(host.Send("AT\r"));
  device.HangUp();
  EXPECT_THAT(device.Commands(), IsEmpty());
}

TEST(Line, ForgetsCommandsWhenAskedTo) {
  SimulatedDevice device(ScriptedProfile({{"AT", "OK"}}));
  Host host(device.Path(), B115200);
  host.Ask("AT\r", kOk);
  device.ClearCommands();
  host.Ask("AT\r", kOk);
  EXPECT_THAT(device.Commands(), ElementsAre("AT"));
}

// The system takes no more than some ten thousand bytes at once, also of a reply that is late.
TEST(Line, SendsALongReplyToItsEnd) {
  for (const char* latency : {"0", "1"}) {
    SCOPED_TRACE(latency);
    const std::string reply(500'000, 'x');
    SimulatedDevice device(ProfileOf("[line]\necho = false\nlatency = " + std::string(latency) +
                                     "\n[replies]\n\"AT+BIG\" = { raw = \"" + reply + "\" }\n"));
    Host host(device.Path());
    EXPECT_EQ(host.Ask("AT+BIG\r", reply).size(), reply.size());
  }
}

// Whatever a host does, the device is there afterwards.
TEST(Line, SurvivesWhatNoModemIsSent) {
  SimulatedDevice device(ProfileOf("[line]\necho = false\n[replies]\n\"AT+BIG\" = { raw = \"" +
                                   std::string(50'000, 'x') + "\" }\n"));
  Host host(device.Path());
  std::string rubbish;
  for (int i = 0; i < 100'000; ++i) rubbish += static_cast<char>(i * 7 % 256);
  const std::pair<std::string, std::string> kSendings[] = {
      {"AT" + std::string(100'000, 'x') + "\r", kError},
      {std::string(100'000, 'A') + "\rAT\r", kOk},
      {std::string(1000, ';') + "AT" + std::string(2000, ';') + "\r", kError},
      {"AT" + std::string(1000, '"') + "+\r", kError},
      {"ATS" + std::string(500, '9') + "?\r", kError},
      {"AT+IPR=99999999999999999999\r", kError},
      {std::string("AT\0\0\r", 5), kOk},
  };
  for (const auto& [bytes, answer] : kSendings) {
    SCOPED_TRACE(bytes.substr(0, 20));
    EXPECT_TRUE(host.Send(bytes));
    EXPECT_EQ(host.ReadTo(answer), answer);
  }
  host.Send(rubbish + "\x18\r");
  host.Send("AT+END\r");
  host.ReadTo(kError);
  // A host that asks and never reads: what does not fit is lost, and the line is free again.
  for (int i = 0; i < 200; ++i) host.Send("AT+BIG\r");
  for (std::string some = "x"; !some.empty();) some = host.Read(65'536, 300);
  EXPECT_EQ(host.Ask("AT\r", kOk), kOk);
}

}  // namespace
}  // namespace kxsim
