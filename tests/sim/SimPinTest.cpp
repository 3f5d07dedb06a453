#include <KXWAN/sim/SimPin.h>
#include <gtest/gtest.h>
#include <tests/support/Dialogue.h>

#include <cstring>

namespace {

struct Case {
  bool puk;
  signed char save;
  long code;
  Answers dialogue;  // all that is sent, in order, and its answers
};

constexpr char kPin[] = R"(AT+CPIN="1234")";
constexpr char kPuk[] = R"(AT+CPIN="12345678","1234")";
constexpr char kUnlock[] = R"(AT+CLCK="SC",0,"1234")";

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
    KXDevicePassword password = {};
    std::strcpy(password.szPUK, "12345678");
    std::strcpy(password.szPIN, "1234");
    password.bSavePIN = row.save;
    const auto enter = row.puk ? SetPINPUKOnCard : SetPINOnCard;
    EXPECT_EQ(enter(device.Modem(), &password), row.code);
    EXPECT_EQ(device.Commands(), CommandsOf(row.dialogue));
  }
}

}  // namespace
