#include <KXWAN/sim/SimCard.h>
#include <KXWAN/sim/SimState.h>
#include <gtest/gtest.h>
#include <tests/support/Dialogue.h>

namespace {

using kxwan::SimState;

constexpr char kQuery[] = "AT+CMEE=1;+CPIN?";

struct Case {
  const char* device;
  Answers dialogue;  // all that is sent, in order, and its answers
  long code;
  long pinLength;
};

const Case kCases[] = {
    {"PIN of up to 8 digits",
     {{kQuery, "+CME ERROR: 11"}, {"AT+CPWD=?", R"(+CPWD: ("AB",4),("SC",4),("P2",12))"}},
     1014,
     8},
    {"PUK, PIN of up to 12 digits",
     {{kQuery, "+CME ERROR: 12"}, {"AT+CPWD=?", R"(+CPWD: ("SC",12))"}},
     1004,
     12},
    {"PIN length beyond any number",
     {{kQuery, "+CME ERROR: 11"}, {"AT+CPWD=?", R"(+CPWD: ("SC",99999999999))"}},
     1014,
     2147483647},
    {"lock entry without its end",
     {{kQuery, "+CME ERROR: 11"}, {"AT+CPWD=?", R"(+CPWD: ("SC",12)"}},
     1014,
     0},
    {"no lock entry", {{kQuery, "+CME ERROR: 17"}, {"AT+CPWD=?", R"(("P2",8))"}}, 1014, 0},
    {"does not tell the length", {{kQuery, "+CME ERROR: 11"}, {"AT+CPWD=?", "ERROR"}}, 1014, 0},
    {"busy, then ready", {{kQuery, "+CME ERROR: 14"}, {"AT+CPIN?", "+CPIN: READY"}}, 0, 0},
    {"busy, then PIN",
     {{kQuery, "+CME ERROR: 14"}, {"AT+CPIN?", "+CME ERROR: 11"}, {"AT+CPWD=?", "(\"SC\",8)"}},
     1014,
     8},
    {"cannot be told twice over",
     {{kQuery, "+CME ERROR: 14"}, {"AT+CPIN?", "+CME ERROR: 99"}},
     0,
     0},
    {"missing", {{kQuery, "+CME ERROR: 10"}}, 1013, 0},
    {"an ordinary reply is not looked at", {{kQuery, "+CPIN: SIM PIN"}}, 0, 0},
    {"a plain ERROR counts as ready", {{kQuery, "ERROR"}}, 0, 0},
    {"silent", {{kQuery, "(silence)"}}, 1015, 0},
};

TEST(IsPasswordRequired, GivesTheCodeAndThePinLength) {
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.device);
    ScriptedDevice device(row.dialogue);
    device.Modem()->m_nRetries = 1;
    long pinLength = -1;
    EXPECT_EQ(IsPasswordRequired(device.Modem(), &pinLength), row.code);
    EXPECT_EQ(pinLength, row.pinLength);
    EXPECT_EQ(device.Commands(), CommandsOf(row.dialogue));
  }
}

struct StateCase {
  const char* answer;  // to the query; where it says nothing, the second query gets none either
  SimState state;
};

const StateCase kStateCases[] = {
    {"+CPIN: READY", SimState::kReady},
    {"+CPIN:SIM PIN", SimState::kPin},
    {"RING\r\n\r\n+CPIN: \"SIM PUK\"\r\n\r\nREADY", SimState::kPuk},
    {"+CPIN: SIM PIN2", SimState::kPin2},
    {"+CPIN: PH-SIM PIN", SimState::kDeviceLock},
    {"+CPIN: NOT READY", SimState::kBusy},
    {"+CPIN: NOT INSERTED", SimState::kMissing},
    {"+CME ERROR: 11", SimState::kPin},
    {"+CME ERROR: 18", SimState::kPuk2},
    {"+CME ERROR: 13", SimState::kFailed},
    {"+CME ERROR: 41", SimState::kDeviceLock},
    {"+CME ERROR: sim busy", SimState::kBusy},
    {"+CME ERROR: SIM not inserted", SimState::kMissing},
    {"+CME ERROR: PH-NET PIN required", SimState::kDeviceLock},
    {"+CME ERROR: 99999999999", SimState::kUnknown},
    {"ERROR", SimState::kUnknown},
    {"OK", SimState::kUnknown},
    {"+CPIN:", SimState::kUnknown},
};

TEST(ReadSimState, UnderstandsRepliesAndErrors) {
  for (const StateCase& row : kStateCases) {
    SCOPED_TRACE(row.answer);
    ScriptedDevice device(Answers{{kQuery, row.answer}});
    EXPECT_EQ(kxwan::ReadSimState(device.Modem()), row.state);
    EXPECT_EQ(device.Commands().size(), row.state == SimState::kUnknown ? 2u : 1u);
  }
  ScriptedDevice device(Answers{{"AT+CPIN?", "+CPIN: SIM PIN"}});
  EXPECT_EQ(kxwan::ReadSimState(device.Modem()), SimState::kPin) << "does not know AT+CMEE";
}

}  // namespace
