#include <KXWAN/sim/SimPin.h>
#include <KXWAN/sim/SimState.h>
#include <gtest/gtest.h>
#include <tests/support/Dialogue.h>

namespace {

using kxwan::SimState;

constexpr char kQuery[] = "AT+CMEE=1;+CPIN?";

struct Case {
  long code;
  long pinLength;
  Answers dialogue;  // all that is sent, in order, and its answers
};

// What the device answers to the query and to the question for the length of a PIN.
Case Locked(long code, const char* error, long pinLength, const char* lengths) {
  return {code, pinLength, {{kQuery, error}, {"AT+CPWD=?", lengths}}};
}

const Case kCases[] = {
    Locked(1014, "+CME ERROR: 11", 8, R"(+CPWD: ("AB",4),("SC",4),("P2",12))"),
    Locked(1004, "+CME ERROR: 12", 12, R"(+CPWD: ("SC",12))"),
    Locked(1014, "+CME ERROR: 11", 2147483647, R"(+CPWD: ("SC",99999999999))"),
    Locked(1014, "+CME ERROR: 11", 0, R"(+CPWD: ("SC",12)"),
    Locked(1014, "+CME ERROR: 17", 0, R"(("P2",8))"),
    Locked(1014, "+CME ERROR: 11", 0, "ERROR"),
    {0, 0, {{kQuery, "+CME ERROR: 14"}, {"AT+CPIN?", "+CPIN: READY"}}},
    {0, 0, {{kQuery, "+CME ERROR: 14"}, {"AT+CPIN?", "+CME ERROR: 99"}}},
    {1013, 0, {{kQuery, "+CME ERROR: 14"}, {"AT+CPIN?", "+CME ERROR: 10"}}},
    {1005, 0, {{kQuery, "+CME ERROR: 16"}}},
    {0, 0, {{kQuery, "+CPIN: SIM PIN"}}},
    {0, 0, {{kQuery, "ERROR"}}},
    {1015, 0, {{kQuery, "(silence)"}}},
};

TEST(IsPasswordRequired, GivesTheCodeAndThePinLength) {
  for (const Case& row : kCases) {
    SCOPED_TRACE(testing::PrintToString(row.dialogue));
    ScriptedDevice device(row.dialogue);
    long pinLength = -1;
    EXPECT_EQ(IsPasswordRequired(device.Modem(), &pinLength), row.code);
    EXPECT_EQ(pinLength, row.pinLength);
    EXPECT_EQ(device.Commands(), CommandsOf(row.dialogue));
  }
}

struct StateCase {
  SimState state;
  std::vector<const char*> answers;  // to the query; a second query is refused
};

const StateCase kStateCases[] = {
    {SimState::kReady, {"+CPIN: READY"}},
    {SimState::kPin, {"+CPIN:SIM PIN", "+CME ERROR: 11"}},
    {SimState::kPuk, {"RING\r\n\r\n+CPIN: \"SIM PUK\"\r\n\r\nREADY", "+CME ERROR: 12"}},
    {SimState::kPin2, {"+CPIN: SIM PIN2"}},
    {SimState::kPuk2, {"+CME ERROR: 18"}},
    {SimState::kDeviceLock, {"+CPIN: PH-SIM PIN", "+CME ERROR: 41", "+CME ERROR: PH-NET PIN"}},
    {SimState::kMissing, {"+CPIN: NOT INSERTED", "+CME ERROR: SIM not inserted"}},
    {SimState::kBusy, {"+CPIN: NOT READY", "+CME ERROR: sim busy"}},
    {SimState::kFailed, {"+CME ERROR: 13", "+CME ERROR: 262"}},
    {SimState::kUnknown, {"+CME ERROR: 99999999999", "ERROR", "OK", "+CPIN:"}},
};

TEST(ReadSimState, UnderstandsRepliesAndErrors) {
  for (const StateCase& row : kStateCases) {
    for (const char* answer : row.answers) {
      ScriptedDevice device(Answers{{kQuery, answer}});
      EXPECT_EQ(kxwan::ReadSimState(device.Modem()), row.state) << answer;
      EXPECT_EQ(device.Commands().size(), row.state == SimState::kUnknown ? 2u : 1u) << answer;
    }
  }
  ScriptedDevice device(Answers{{"AT+CPIN?", "+CPIN: SIM PIN"}});
  EXPECT_EQ(kxwan::ReadSimState(device.Modem()), SimState::kPin) << "does not know AT+CMEE";
}

}  // namespace
