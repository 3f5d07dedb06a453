#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <profile/Faults.h>
#include <simulator/SimulatedDevice.h>
#include <simulator/line/FaultSet.h>
#include <tests/support/Host.h>

#include <chrono>
#include <filesystem>
#include <string>

namespace kxsim {
namespace {

const std::string kOk = "\r\nOK\r\n";
constexpr const char* kPlain = "families = [\"gsm\"]\n[line]\necho = false\n";
const std::string kSignal = "\r\n+CSQ: 20,99\r\n\r\nOK\r\n";

Fault FaultOf(const std::string& words) {
  Fault fault;
  const Result failure = ParseFault(words, fault);
  if (failure) ADD_FAILURE() << failure->sentence;
  return fault;
}

DeviceOptions WithFault(const std::string& words) {
  DeviceOptions options;
  options.faults = {FaultOf(words)};
  return options;
}

struct Spoiled {
  const char* fault;
  std::string first;   // what comes for AT+CSQ
  std::string second;  // and for another
};

const Spoiled kSpoiled[] = {
    {"pieces,bytes=3,ms=1", kSignal, kSignal},
    {"pace", kSignal, kSignal},
    {"late,ms=20,at=1", kSignal, kSignal},
    {"lost,at=1", "", kSignal},
    {"rubbish,text=xyz,at=2", kSignal, "xyz" + kSignal},
    {"between,text=RING,at=1", kSignal + "\r\nRING\r\n", kSignal},
    {"between,text=+CREG: 1,ms=5", kSignal + "\r\n+CREG: 1\r\n", kSignal + "\r\n+CREG: 1\r\n"},
    {"inside,at=1", "\r\n+CSQ: 20,99\r\n\r\nRING\r\n\r\nOK\r\n", kSignal},
    {"flood,bytes=9,text=F,at=1", kSignal + "\r\nF\r\n\r\nF\r\n", kSignal},
    {"drop,rate=1,at=2", kSignal, ""},
    {"lost,rate=0", kSignal, kSignal},
    {"echo", "AT+CSQ\r" + kSignal, "AT+CSQ\r" + kSignal},
};

TEST(Fault, SpoilsTheRepliesItIsMeantFor) {
  for (const Spoiled& row : kSpoiled) {
    SCOPED_TRACE(row.fault);
    SimulatedDevice device(ProfileOf(kPlain), WithFault(row.fault));
    Host host(device.Path());
    EXPECT_EQ(host.Ask("AT+CSQ\r", row.first), row.first);
    EXPECT_EQ(host.Ask("AT+CSQ\r", row.second), row.second);
  }
}

std::string TenReplies(const char* fault, uint64_t seed) {
  FaultSet faults({FaultOf(fault)}, seed);
  std::string all;
  for (int i = 0; i < 10; ++i) {
    Delivery delivery;
    delivery.pieces = {std::to_string(i) + kSignal};
    faults.Spoil(delivery, 19200);
    for (const std::string& piece : delivery.pieces) all += piece;
  }
  return all;
}

TEST(Fault, IsRepeatableBySeed) {
  for (const char* fault : {"lost,rate=0.5", "flip,rate=0.1", "drop,rate=0.2", "rubbish,bytes=4"}) {
    SCOPED_TRACE(fault);
    const std::string once = TenReplies(fault, 7);
    EXPECT_EQ(TenReplies(fault, 7), once);
    EXPECT_NE(TenReplies(fault, 8), once);
  }
}

// Only that it is never faster than the line: how late a busy machine makes it is not the
// device's doing.
TEST(Fault, KeepsThePaceOfTheLine) {
  Profile profile = ScriptedProfile({{"AT", "(raw)" + std::string(96, 'x')}});
  profile.line.baud = 9600;
  for (const bool autobaud : {false, true}) {
    profile.line.autobaud = autobaud;
    SimulatedDevice device(profile, WithFault("pace"));
    Host host(device.Path(), B9600);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(host.Ask("AT\r", std::string(96, 'x')).size(), 96U);
    const auto time = std::chrono::steady_clock::now() - start;
    EXPECT_GE(time, std::chrono::milliseconds(98));
  }
}

TEST(Fault, AnswersWithNoiseAtTheWrongSpeed) {
  SimulatedDevice device(ProfileOf("[line]\nbaud = 9600"), WithFault("noise"));
  Host host(device.Path());
  host.Send("AT\r");
  EXPECT_EQ(host.Read(3).size(), 3U);
  EXPECT_TRUE(device.Commands().empty());
}

TEST(Fault, HangsUpAndComesBackUnderItsLink) {
  const std::string link = testing::TempDir() + "kxsim-link-" + std::to_string(getpid());
  DeviceOptions options = WithFault("hangup,at=2,ms=1");
  options.link = link;
  SimulatedDevice device(ProfileOf(std::string(kPlain) + "[sim]\nstate = \"pin\""),
                         std::move(options));
  Host host(link);
  EXPECT_EQ(host.Ask("AT+CPIN=\"1234\"\r", kOk), kOk);
  host.Send("AT\r");
  EXPECT_EQ(host.Read(1), "");
  host.Close();
  const std::string answer = "\r\n+CPIN: SIM PIN\r\n" + kOk;
  std::string got;
  for (int i = 0; i < 1000 && got.empty(); ++i) {
    Host again(link);
    again.Send("AT+CPIN?\r");
    got = again.Read(answer.size(), 100);
  }
  EXPECT_EQ(got, answer);
  EXPECT_TRUE(std::filesystem::is_symlink(link));
}

}  // namespace
}  // namespace kxsim
