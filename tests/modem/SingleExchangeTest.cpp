#include <KXWAN/modem/CSModem.h>
#include <KXWAN/modem/Exchange.h>
#include <gtest/gtest.h>
#include <tests/support/BusyMachine.h>
#include <tests/support/ScriptedDevice.h>
#include <tests/support/SideBySide.h>
#include <tests/support/Waiting.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using std::chrono::steady_clock;

using Lines = std::vector<std::string>;

// What a device makes of "AT+A", and the command that is sent once behind it.
struct Case {
  const char* name;
  std::string answer;    // to AT+A
  int lateMs;            // that answer
  const char* question;  // that settles the line; the device refuses the others
  bool sent;
  Lines commands;  // where it is certain which questions are asked
};

const Case kCases[] = {
    {"clean", "first", 0, "", true, {"AT+A", "AT+B"}},
    {"an answer was lost", "(silence)", 0, "ATS3?", true, {"AT+A", "ATS3?", "AT+B"}},
    {"an answer comes late", "first", 2500, "ATS3?", true, {}},
    {"a device without registers",
     "(silence)",
     0,
     "AT+GCAP",
     true,
     {"AT+A", "ATS3?", "AT+GCAP", "AT+B"}},
    {"a device that refuses every question", "(silence)", 0, "", false, {}},
};

// It does not wait for longer than it takes to be answered.
TEST(SendOnce, SettlesTheLineBefore) {
  SideBySide(kCases, [](const Case& row) {
    OnABusyMachine([&] {
      constexpr unsigned long kLongMs = 20000;
      kxsim::Answer first = kxsim::ParseAnswer(row.answer);
      first.latencyMs = row.lateMs;
      kxsim::Profile profile = kxsim::ScriptedProfile({{"AT+B", "second"}});
      kxsim::AddReply(profile, "AT+A", first);
      const bool isRegister = std::string(row.question) == "ATS3?";
      kxsim::AddReply(profile, row.question,
                      kxsim::ParseAnswer(isRegister ? "013" : "+GCAP: +CGSM"));
      ScriptedDevice device(profile);
      int result = -1;
      CString response;
      const bool isAnswered = row.question[0] == '\0' && row.sent;
      kxwan::SendOnce(device.Modem(), "AT+A\r", isAnswered ? kLongMs : 1000, result, response);

      const auto start = steady_clock::now();
      EXPECT_EQ(kxwan::SendOnce(device.Modem(), "AT+B\r", kLongMs, result, response), row.sent);
      EXPECT_LT(SecondsSince(start), 10);
      EXPECT_EQ(result, row.sent ? kxwan::kResultOk : kxwan::kResultInDoubt);
      EXPECT_STREQ(response.String(), row.sent ? "second" : "");
      const Lines commands = device.Commands();
      EXPECT_EQ(std::count(commands.begin(), commands.end(), "AT+B"), row.sent ? 1 : 0);
      EXPECT_TRUE(row.commands.empty() || commands == row.commands)
          << testing::PrintToString(commands);
    });
  });
}

TEST(SingleExchange, CanBeWaitedForOn) {
  kxsim::Profile profile = kxsim::ScriptedProfile({});
  kxsim::AddReply(profile, "AT+A", {.text = "first", .latencyMs = 3000});
  ScriptedDevice device(profile);
  int result = -1;
  CString response;
  EXPECT_FALSE(kxwan::SendOnce(device.Modem(), "AT+A\r", 1000, result, response));
  EXPECT_EQ(result, kxwan::kResultTimeout);
  EXPECT_TRUE(device.Modem()->GetResponse(result, response, 20000));
  EXPECT_STREQ(response.String(), "first");
  EXPECT_EQ(device.Commands(), Lines{"AT+A"});
}

TEST(SingleExchange, EndsAtOnceWhenTheLineHangsUp) {
  kxsim::Profile profile = kxsim::ScriptedProfile({});
  profile.faults = {{.kind = "hangup", .at = 1, .text = ""}};
  ScriptedDevice device(profile);
  int result = -1;
  CString response;
  const auto start = steady_clock::now();
  for (int i = 0; i < 2; ++i) {
    EXPECT_FALSE(kxwan::SendOnce(device.Modem(), "AT+A\r", 20000, result, response));
    EXPECT_EQ(result, kxwan::kResultDeviceGone);
    EXPECT_STREQ(response.String(), "");
  }
  EXPECT_LT(SecondsSince(start), 10);
}

}  // namespace
