#include <KXWAN/sim/PinEntry.h>
#include <KXWAN/sim/SimPin.h>
#include <gtest/gtest.h>
#include <tests/support/Dialogue.h>

#include <cstdio>

namespace {

using kxwan::PinOutcome;

struct Case {
  const char* device;
  bool puk;
  signed char save;
  Answers dialogue;  // all that is sent, in order, and its answers
  long code;
};

constexpr char kPin[] = R"(AT+CPIN="1234")";
constexpr char kPuk[] = R"(AT+CPIN="12345678","1234")";
constexpr char kUnlock[] = R"(AT+CLCK="SC",0,"1234")";
constexpr char kQuery[] = "AT+CMEE=1;+CPIN?";

const Case kCases[] = {
    {"takes the PIN", false, 0, {{kPin, "OK"}}, 0},
    {"takes and saves the PIN", false, -1, {{kPin, "OK"}, {kUnlock, "OK"}}, 0},
    {"does not save the PIN", false, 1, {{kPin, "OK"}, {kUnlock, "+CME ERROR: 16"}}, 1007},
    {"refuses the PIN", false, 1, {{kPin, "ERROR"}}, 1008},
    {"refuses the PIN with a number", false, 1, {{kPin, "+CME ERROR: 16"}}, 1000},
    {"is silent", false, 1, {{kPin, "(silence)"}}, 1000},
    {"takes the PUK", true, 0, {{kPuk, "OK"}}, 0},
    {"takes the PUK and saves the new PIN", true, 1, {{kPuk, "OK"}, {kUnlock, "OK"}}, 0},
    {"does not save the new PIN", true, 1, {{kPuk, "OK"}, {kUnlock, "ERROR"}}, 1007},
    {"refuses the PUK", true, 0, {{kPuk, "ERROR"}}, 1008},
    {"refuses the PUK with a number", true, 0, {{kPuk, "+CME ERROR: 12"}}, 1000},
};

TEST(SetPinOnCard, EntersAndSaves) {
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.device);
    ScriptedDevice device(row.dialogue);
    device.Modem()->m_nRetries = 1;
    KXDevicePassword password = {};
    std::snprintf(password.szPUK, sizeof password.szPUK, "12345678");
    std::snprintf(password.szPIN, sizeof password.szPIN, "1234");
    password.bSavePIN = row.save;
    const auto enter = row.puk ? SetPINPUKOnCard : SetPINOnCard;
    EXPECT_EQ(enter(device.Modem(), &password), row.code);
    EXPECT_EQ(device.Commands(), CommandsOf(row.dialogue));
  }
}

struct EntryCase {
  const char* device;
  bool puk;
  Answers dialogue;
  PinOutcome outcome;
};

const EntryCase kEntryCases[] = {
    {"takes the PIN", false, {{kPin, "OK"}}, PinOutcome::kAccepted},
    {"takes the PUK", true, {{kPuk, "OK"}}, PinOutcome::kAccepted},
    {"wrong PIN, more tries",
     false,
     {{kPin, "ERROR"}, {kQuery, "+CPIN: SIM PIN"}},
     PinOutcome::kWrong},
    {"wrong PIN, the last",
     false,
     {{kPin, "+CME ERROR: 16"}, {kQuery, "+CME ERROR: 12"}},
     PinOutcome::kPukNeeded},
    {"wrong PIN, does not tell its state",
     false,
     {{kPin, "+CME ERROR: Incorrect password"}, {kQuery, "ERROR"}, {"AT+CPIN?", "ERROR"}},
     PinOutcome::kWrong},
    {"wrong PUK", true, {{kPuk, "+CME ERROR: 16"}, {kQuery, "+CPIN: SIM PUK"}}, PinOutcome::kWrong},
    {"wrong PUK, the last",
     true,
     {{kPuk, "+CME ERROR: 16"}, {kQuery, "+CME ERROR: 13"}},
     PinOutcome::kBlocked},
    {"PUK for a card that asks for its PIN",
     true,
     {{kPuk, "+CME ERROR: 3"}, {kQuery, "+CPIN: SIM PIN"}},
     PinOutcome::kNotPossible},
    {"PIN for a card that asks for none",
     false,
     {{kPin, "+CME ERROR: 3"}, {kQuery, "+CPIN: READY"}},
     PinOutcome::kNotPossible},
    {"silent: sent once and no more", false, {{kPin, "(silence)"}}, PinOutcome::kNoAnswer},
};

TEST(EnterPinAndPuk, SendOnceAndTellWhy) {
  for (const EntryCase& row : kEntryCases) {
    SCOPED_TRACE(row.device);
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
  for (const char* text : {"1234567", "123456789", "1234567a"}) {
    EXPECT_EQ(kxwan::EnterPuk(device.Modem(), text, "1234", 300), PinOutcome::kNotSent) << text;
  }
  EXPECT_EQ(kxwan::EnterPin(device.Modem(), nullptr, 300), PinOutcome::kNotSent);
  EXPECT_TRUE(device.Commands().empty());
}

}  // namespace
