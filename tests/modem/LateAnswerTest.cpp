#include <KXWAN/modem/CSModem.h>
#include <gtest/gtest.h>
#include <tests/support/ScriptedDevice.h>
#include <tests/support/SideBySide.h>
#include <tests/support/Waiting.h>

#include <string>
#include <vector>

namespace {

// The number of a command is in its answer.
std::string CommandOf(size_t number) { return "AT+Q" + std::to_string(number); }
std::string AnswerOf(size_t number) { return "answer " + std::to_string(number); }

kxsim::Profile DeviceWith(size_t commands) {
  kxsim::Profile profile = kxsim::ScriptedProfile({});
  for (size_t i = 0; i < commands; ++i) {
    kxsim::AddReply(profile, CommandOf(i), kxsim::ParseAnswer(AnswerOf(i)));
  }
  return profile;
}

// What comes of a command: '+' its own answer, '-' none, 'X' something else.
char Ask(CSModem& modem, size_t number) {
  int result = -1;
  CString response;
  const bool came =
      modem.SendCommandGetResponse((CommandOf(number) + "\r").c_str(), result, response);
  if (!came && result == kxwan::kResultTimeout) return '-';
  return came && result == kxwan::kResultOk && response.String() == AnswerOf(number) ? '+' : 'X';
}

// Whether it is as promised: '+' its own answer, '?' that or none.
bool IsAsPromised(const std::string& outcomes, const std::string& promised) {
  for (size_t i = 0; i < promised.size(); ++i) {
    if (outcomes[i] != '+' && (outcomes[i] != '-' || promised[i] != '?')) return false;
  }
  return true;
}

kxsim::Fault Late(int milliseconds, int at, double rate = 1) {
  return {.kind = "late", .at = at, .rate = rate, .ms = milliseconds, .text = ""};
}

// A device that answers everything, in order, and what becomes of commands that are sent to it one
// behind another, with three tries of a second and a half each.
struct Schedule {
  const char* name;
  int latencyMs;                     // of every answer
  std::vector<kxsim::Fault> faults;  // what makes some of them later
  std::string promised;              // of each command
};

const Schedule kSchedules[] = {
    {"0.4 s", 400, {}, "++++++++"},
    {"the first 1.6 s, then 0.8 s", 800, {Late(800, 1)}, "+??+"},
    {"the first 3.5 s, then 0.7 s", 700, {Late(2800, 1)}, "+??+"},
    {"the first 5 s, then 0.7 s", 700, {Late(4300, 1)}, "???+"},
    {"the first 10 s, then 0.3 s", 300, {Late(9700, 1)}, "????+"},
    {"1.6 s", 1600, {}, "+??"},
    {"2 s", 2000, {}, "+??"},
    {"2.5 s", 2500, {}, "+??"},
    {"now and then late",
     0,
     {Late(1600, 0, .1), Late(2900, 0, .08), Late(4200, 0, .06)},
     "????????????"},
};

TEST(LateAnswer, IsNoOtherCommands) {
  SideBySide(kSchedules, [](const Schedule& row) {
    kxsim::Profile profile = DeviceWith(row.promised.size());
    profile.line.latencyMs = row.latencyMs;
    profile.faults = row.faults;
    ScriptedDevice device(profile);
    std::string outcomes;
    while (outcomes.size() < row.promised.size()) outcomes += Ask(*device.Modem(), outcomes.size());
    EXPECT_TRUE(IsAsPromised(outcomes, row.promised)) << outcomes;
  });
}

// The line changes while an answer is owed. Where the speed means nothing it comes all the same.
struct Change {
  const char* name;
  bool reopens;  // otherwise the speed changes
  bool comes;    // the answer that is owed
};

const Change kChanges[] = {
    {"reopened", true, true},
    {"reopened and it is lost", true, false},
    {"another speed", false, true},
    {"another speed and it is lost", false, false},
};

TEST(LateAnswerFromBeforeAChange, IsNoOtherCommands) {
  SideBySide(kChanges, [](const Change& row) {
    kxsim::Profile profile = DeviceWith(5);
    kxsim::Fault lost = {.kind = "lost", .at = 1, .text = ""};
    profile.faults = {row.comes ? Late(2500, 1) : lost};
    ScriptedDevice device(profile);
    CSModem& modem = *device.Modem();
    modem.m_nRetries = 1;
    std::string outcomes(1, Ask(modem, 0));
    modem.m_nRetries = 3;
    if (row.reopens) {
      modem.m_pSerial->Close();
      ASSERT_TRUE(modem.m_pSerial->Open(device.Path().c_str()));
    } else {
      ASSERT_TRUE(modem.m_pSerial->SetDataFormat(57600, -1, -1, -1));
    }
    while (outcomes.size() < 5) outcomes += Ask(modem, outcomes.size());
    EXPECT_EQ(outcomes, "-++++");
  });
}

// A device that wakes up slowly, on a line whose speed means nothing: it is asked at each speed
// that is searched, and answers them all.
TEST(LateAnswerToASearch, IsNoOtherCommands) {
  kxsim::Profile profile = DeviceWith(5);
  profile.line.latencyMs = 300;
  profile.faults = {Late(5300, 1)};
  kxsim::AddReply(profile, "AT+IPR=115200", kxsim::ParseAnswer("OK"));
  kxsim::SimulatedDevice device(profile);
  CSModem modem;
  EXPECT_TRUE(modem.OpenDeviceFast(device.Path().c_str(), /*baudMask=*/0x1E, 115200));
  std::string outcomes;
  while (outcomes.size() < 5) outcomes += Ask(modem, outcomes.size());
  EXPECT_TRUE(IsAsPromised(outcomes, "????+")) << outcomes;
}

}  // namespace
