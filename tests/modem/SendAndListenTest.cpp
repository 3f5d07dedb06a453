#include <KXWAN/modem/CSModem.h>
#include <gtest/gtest.h>
#include <tests/support/ScriptedDevice.h>
#include <tests/support/Waiting.h>

#include <string>
#include <vector>

namespace {

constexpr unsigned long kLongMs = 20000;

// The next result that comes, with its text: "0 first".
std::string Next(CSModem& modem) {
  int result = -1;
  CString response;
  modem.GetResponse(result, response, kLongMs);
  return std::to_string(result) + " " + response.String();
}

// What a device sends is taken one result at a time, whatever it belongs to.
TEST(SendAndListen, GiveTheNextResultThatComes) {
  ScriptedDevice device(Answers{{"AT+A", "first"}, {"AT+B", "+CME ERROR: 3"}, {"AT+C", "third"}});
  CSModem& modem = *device.Modem();
  for (int i = 0; i < 2; ++i) {
    for (const char* command : {"AT+A\r", "AT+B\r", "AT+C\r"}) {
      EXPECT_TRUE(modem.SendCommand(command));
    }
    EXPECT_EQ(Next(modem), "0 first");
    EXPECT_EQ(Next(modem), "101 3");
    EXPECT_EQ(Next(modem), "0 third");
  }
}

TEST(SendAndListen, GiveTwoResultsThatWaitTogether) {
  kxsim::Profile profile = kxsim::ScriptedProfile({});
  kxsim::AddReply(profile, "AT+A", {.raw = {"\r\na\r\n\r\nOK\r\n\r\nb\r\n\r\nOK\r\n"}});
  ScriptedDevice device(profile);
  CSModem& modem = *device.Modem();
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(modem.SendCommand("AT+A\r"));
    ASSERT_TRUE(AwaitInput(modem));
    EXPECT_EQ(Next(modem), "0 a");
    EXPECT_EQ(Next(modem), "0 b");
  }
}

// A result that waited before the command was sent is the next one, too.
TEST(SendAndListen, GiveWhatWaited) {
  kxsim::Profile profile = kxsim::ScriptedProfile({{"AT+B", "second"}});
  profile.faults = {{.kind = "between", .at = 1, .ms = 100, .text = "OK"}};
  kxsim::AddReply(profile, "AT+A", kxsim::ParseAnswer("first"));
  ScriptedDevice device(profile);
  CSModem& modem = *device.Modem();
  EXPECT_TRUE(modem.SendCommand("AT+A\r"));
  EXPECT_EQ(Next(modem), "0 first");
  ASSERT_TRUE(AwaitInput(modem));
  EXPECT_TRUE(modem.SendCommand("AT+B\r"));
  EXPECT_EQ(Next(modem), "0 ");
  EXPECT_EQ(Next(modem), "0 second");
}

}  // namespace
