#include <KXWAN/sim/PinEntry.h>
#include <KXWAN/sim/SimPin.h>
#include <gtest/gtest.h>
#include <tests/support/Dialogue.h>

#include <cstring>

namespace {

using kxwan::PinOutcome;

struct Case {
  bool puk;
  signed char save;
  long code;
  Answers dialogue;  // all that is sent, in order, and its answers
};

constexpr char kPin[] = R"(AT+CPIN="1234")";
constexpr char kPuk[] = R"(AT+CPIN="12345678","1234")";
constexpr char kUnlock[] = R"(AT+CLCK="SC",0,"1234")";
constexpr char kQuery[] = "AT+CMEE=1;+CPIN?";

const Case kCases[] = {
    {false, 0, 0, {{kPin, "OK"}}},
    {false, -1, 0, {{kPin, "OK"}, {kUnlock, "OK"}}},
    {false, 1, 1007, {{kPin, "OK"}, {kUnlock, "+CME ERROR: 16"}}},
    {false, 1, 1008, {{kPin, "ERROR"}}},
    {false, 1, 1000, {{kPin, "+CME ERROR: 16"}}},
    {false, 1, 1000, {{kPin, "(silence)"}}},
    {true, 0, 0, {{kPuk, "OK"}}},
    {true, 1, 0, {{kPuk, "OK"}, {kUnlock, "OK"}}},
    {true, 1, 1007, {{kPuk, "OK"}, {kUnlock, "ERROR"}}},
    {true, 0, 1008, {{kPuk, "ERROR"}}},
    {true, 0, 1000, {{kPuk, "+CME ERROR: 12"}}},
};

TEST(SetPinOnCard, EntersAndSaves) {
  for (const Case& row : kCases) {
    SCOPED_TRACE(testing::PrintToString(row.dialogue));
    ScriptedDevice device(row.dialogue);
    device.Modem()->m_nRetries = 1;
    KXDevicePassword password = {};
    std::strcpy(password.szPUK, "12345678");
    std::strcpy(password.szPIN, "1234");
    password.bSavePIN = row.save;
    const auto enter = row.puk ? SetPINPUKOnCard : SetPINOnCard;
    EXPECT_EQ(enter(device.Modem(), &password), row.code);
    EXPECT_EQ(device.Commands(), CommandsOf(row.dialogue));
  }
}

struct EntryCase {
  bool puk;
  PinOutcome outcome;
  Answers dialogue;
};

const EntryCase kEntryCases[] = {
    {false, PinOutcome::kAccepted, {{kPin, "OK"}}},
    {true, PinOutcome::kAccepted, {{kPuk, "OK"}}},
    {false, PinOutcome::kWrong, {{kPin, "ERROR"}, {kQuery, "+CPIN: SIM PIN"}}},
    {false, PinOutcome::kPukNeeded, {{kPin, "+CME ERROR: 16"}, {kQuery, "+CME ERROR: 12"}}},
    {false,
     PinOutcome::kWrong,
     {{kPin, "+CME ERROR: Incorrect password"}, {kQuery, "+CPIN: NO"}, {"AT+CPIN?", "ERROR"}}},
    {true, PinOutcome::kWrong, {{kPuk, "+CME ERROR: 16"}, {kQuery, "+CPIN: SIM PUK"}}},
    {true, PinOutcome::kBlocked, {{kPuk, "+CME ERROR: 16"}, {kQuery, "+CME ERROR: 13"}}},
    {true, PinOutcome::kNotPossible, {{kPuk, "+CME ERROR: 3"}, {kQuery, "+CPIN: SIM PIN"}}},
    {false, PinOutcome::kNotPossible, {{kPin, "+CME ERROR: 3"}, {kQuery, "+CPIN: READY"}}},
    {false, PinOutcome::kNoAnswer, {{kPin, "(silence)"}}},  // sent once and no more
};

TEST(EnterPinAndPuk, SendOnceAndTellWhy) {
  for (const EntryCase& row : kEntryCases) {
    SCOPED_TRACE(testing::PrintToString(row.dialogue));
    ScriptedDevice device(row.dialogue);
    CSModem* modem = device.Modem();
    EXPECT_EQ(row.puk ? kxwan::EnterPuk(modem, "12345678", "1234", 300)
                      : kxwan::EnterPin(modem, "1234", 300),
              row.outcome);
    EXPECT_EQ(device.Commands(), CommandsOf(row.dialogue));
  }
}

TEST(EnterPinAndPuk, SendNothingThatCannotBeOne) {
  ScriptedDevice device(Answers{});
  for (const char* text : {"", "123", "123456789", "12a4", "1234\r", " 1234", "\"234"}) {
    EXPECT_EQ(kxwan::EnterPin(device.Modem(), text, 300), PinOutcome::kNotSent) << text;
    EXPECT_EQ(kxwan::EnterPuk(device.Modem(), "12345678", text, 300), PinOutcome::kNotSent) << text;
  }
  EXPECT_EQ(kxwan::EnterPuk(device.Modem(), "1234567", "1234", 300), PinOutcome::kNotSent);
  EXPECT_EQ(kxwan::EnterPin(device.Modem(), nullptr, 300), PinOutcome::kNotSent);
  EXPECT_TRUE(device.Commands().empty());
}

}  // namespace
