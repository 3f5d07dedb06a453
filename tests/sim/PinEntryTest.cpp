#include <KXWAN/modem/Exchange.h>
#include <KXWAN/sim/PinEntry.h>
#include <gtest/gtest.h>
#include <tests/support/BusyMachine.h>
#include <tests/support/Dialogue.h>
#include <tests/support/Host.h>
#include <tests/support/SideBySide.h>

#include <algorithm>

namespace {

using kxwan::PinOutcome;

constexpr char kPin[] = R"(AT+CPIN="1234")";
constexpr char kPuk[] = R"(AT+CPIN="12345678","1234")";
constexpr char kQuestion[] = "ATS3?";
constexpr char kQuery[] = "AT+CMEE=1;+CPIN?";

struct Case {
  const char* name;
  bool puk;
  PinOutcome outcome;
  Answers dialogue;  // all that is sent, in order, and its answers
};

Case Of(const char* name, bool puk, PinOutcome outcome, Answers dialogue) {
  return {name, puk, outcome, std::move(dialogue)};
}

// An entry that is not answered is sent once and no more.
const Case kCases[] = {
    Of("PIN accepted", false, PinOutcome::kAccepted, {{kPin, "OK"}}),
    Of("PUK accepted", true, PinOutcome::kAccepted, {{kPuk, "OK"}}),
    Of("PIN wrong", false, PinOutcome::kWrong, {{kPin, "ERROR"}, {kQuery, "+CPIN: SIM PIN"}}),
    Of("PIN wrong for the last time", false, PinOutcome::kPukNeeded,
       {{kPin, "+CME ERROR: 16"}, {kQuery, "+CME ERROR: 12"}}),
    Of("PIN wrong in words", false, PinOutcome::kWrong,
       {{kPin, "+CME ERROR: Incorrect password"}, {kQuery, "+CPIN: NO"}, {"AT+CPIN?", "ERROR"}}),
    Of("PUK wrong", true, PinOutcome::kWrong,
       {{kPuk, "+CME ERROR: 16"}, {kQuery, "+CPIN: SIM PUK"}}),
    Of("PUK wrong for the last time", true, PinOutcome::kBlocked,
       {{kPuk, "+CME ERROR: 16"}, {kQuery, "+CME ERROR: 13"}}),
    Of("PUK not asked for", true, PinOutcome::kNotPossible,
       {{kPuk, "+CME ERROR: 3"}, {kQuery, "+CPIN: SIM PIN"}}),
    Of("PIN not asked for", false, PinOutcome::kNotPossible,
       {{kPin, "+CME ERROR: 3"}, {kQuery, "+CPIN: READY"}}),
    Of("silent and ready", false, PinOutcome::kAccepted,
       {{kPin, "(silence)"}, {kQuestion, "013"}, {kQuery, "+CPIN: READY"}}),
    Of("silent and locked", false, PinOutcome::kNoAnswer,
       {{kPin, "(silence)"}, {kQuestion, "013"}, {kQuery, "+CPIN: SIM PIN"}}),
    Of("silent and blocked", false, PinOutcome::kPukNeeded,
       {{kPin, "(silence)"}, {kQuestion, "013"}, {kQuery, "+CPIN: SIM PUK"}}),
};

TEST(EnterPinAndPuk, SendsItOnceAndTellsWhy) {
  SideBySide(kCases, [](const Case& row) {
    OnABusyMachine([&] {
      ScriptedDevice device(row.dialogue);
      CSModem* modem = device.Modem();
      const unsigned long waits = row.dialogue[0].second == "(silence)" ? 1500 : 20000;
      EXPECT_EQ(row.puk ? kxwan::EnterPuk(modem, "12345678", "1234", waits)
                        : kxwan::EnterPin(modem, "1234", waits),
                row.outcome);
      EXPECT_EQ(device.Commands(), CommandsOf(row.dialogue));
    });
  });
}

TEST(EnterPinAndPuk, SendNothingThatCannotBeOne) {
  ScriptedDevice device(Answers{});
  for (const char* text : {"", "123", "123456789", "12a4", "1234\r", " 1234", "\"234"}) {
    EXPECT_EQ(kxwan::EnterPin(device.Modem(), text, 1000), PinOutcome::kNotSent) << text;
    EXPECT_EQ(kxwan::EnterPuk(device.Modem(), "12345678", text, 1000), PinOutcome::kNotSent)
        << text;
  }
  EXPECT_EQ(kxwan::EnterPuk(device.Modem(), "1234567", "1234", 1000), PinOutcome::kNotSent);
  EXPECT_EQ(kxwan::EnterPin(device.Modem(), nullptr, 1000), PinOutcome::kNotSent);
  EXPECT_TRUE(device.Commands().empty());
}

// A question for the state of a card whose PIN is 1234, answered so late that the PIN is entered
// before.
struct LateCase {
  const char* name;
  int lateMs;
  const char* pin;
  unsigned long timeoutMs;  // of the PIN
  PinOutcome outcome;
  long sent;  // how often
};

const LateCase kLateCases[] = {
    {"right", 2500, "1234", 10000, PinOutcome::kAccepted, 1},
    {"wrong", 2500, "4321", 10000, PinOutcome::kWrong, 1},
    {"the question is not answered in time", 60000, "1234", 1000, PinOutcome::kInDoubt, 0},
};

TEST(EnterPinBehindALateAnswer, HasAnOutcomeOfItsOwn) {
  SideBySide(kLateCases, [](const LateCase& row) {
    OnABusyMachine([&] {
      kxsim::Profile profile = ProfileNamed("gprs-phone-with-pin");
      profile.line.echo = false;
      profile.faults = {{.kind = "late", .at = 1, .ms = row.lateMs, .text = ""}};
      ScriptedDevice device(profile);
      int result = -1;
      CString response;
      EXPECT_FALSE(kxwan::SendOnce(device.Modem(), "AT+CPIN?\r", 1000, result, response));
      EXPECT_EQ(kxwan::EnterPin(device.Modem(), row.pin, row.timeoutMs), row.outcome);
      const std::vector<std::string> commands = device.Commands();
      EXPECT_EQ(std::count_if(commands.begin(), commands.end(),
                              [](const std::string& each) { return each.starts_with("AT+CPIN="); }),
                row.sent);
    });
  });
}

}  // namespace
