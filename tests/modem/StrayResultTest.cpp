#include <KXWAN/modem/CSModem.h>
#include <gtest/gtest.h>
#include <tests/support/ScriptedDevice.h>
#include <tests/support/SideBySide.h>
#include <tests/support/Waiting.h>

#include <string>
#include <vector>

namespace {

// A second piece comes half a second behind the first.
kxsim::Answer Raw(std::vector<std::string> pieces) {
  kxsim::Answer answer;
  answer.raw = std::move(pieces);
  answer.gapMs = 500;
  return answer;
}

// Results that are one too many. The first command is answered with them, and others follow when
// all has come.
struct Case {
  const char* name;
  std::vector<std::string> pieces;
  int result;
  const char* response;
};

const std::string kAnswer = "\r\nfirst\r\n\r\nOK\r\n";

const Case kCases[] = {
    {"an OK while idle", {kAnswer, "\r\nOK\r\n"}, kxwan::kResultOk, "first"},
    {"an error while idle", {kAnswer, "\r\n+CME ERROR: 4\r\n"}, kxwan::kResultOk, "first"},
    {"twice in one go", {kAnswer + kAnswer}, kxwan::kResultOk, "first"},
    {"three in one go", {kAnswer + kAnswer + "\r\nOK\r\n"}, kxwan::kResultOk, "first"},
    {"twice", {kAnswer, kAnswer}, kxwan::kResultOk, "first"},
    {"ERROR and then OK", {"\r\nERROR\r\n", "\r\nOK\r\n"}, kxwan::kResultError, ""},
};

TEST(StrayResult, IsNoOtherCommands) {
  SideBySide(kCases, [](const Case& row) {
    kxsim::Profile profile = kxsim::ScriptedProfile({{"AT+B", "second"}, {"AT+C", "ERROR"}});
    kxsim::AddReply(profile, "AT+A", Raw(row.pieces));
    ScriptedDevice device(profile);
    CSModem& modem = *device.Modem();
    int result = -1;
    CString response;
    for (int i = 0; i < 2; ++i) {
      EXPECT_TRUE(modem.SendCommandGetResponse("AT+A\r", result, response));
      EXPECT_EQ(result, row.result);
      EXPECT_STREQ(response.String(), row.response);
      ASSERT_TRUE(row.pieces.size() == 1 || AwaitInput(modem));
      EXPECT_TRUE(modem.SendCommandGetResponse("AT+B\r", result, response));
      EXPECT_EQ(result, kxwan::kResultOk);
      EXPECT_STREQ(response.String(), "second");
      EXPECT_TRUE(modem.SendCommandGetResponse("AT+C\r", result, response));
      EXPECT_EQ(result, kxwan::kResultError);
    }
  });
}

// A host that does not pause may take a result too many for its next command's: it cannot know.
// With its first pause it is in step again.
TEST(StrayResult, BehindTheNextCommandPutsNothingOutOfStepForEver) {
  kxsim::Profile profile = kxsim::ScriptedProfile({{"AT+C", "third"}});
  kxsim::AddReply(profile, "AT+A", Raw({"\r\nERROR\r\n", "\r\nOK\r\n"}));
  kxsim::AddReply(profile, "AT+B", {.text = "second", .latencyMs = 200});
  ScriptedDevice device(profile);
  CSModem& modem = *device.Modem();
  int result = -1;
  CString response;
  EXPECT_TRUE(modem.SendCommandGetResponse("AT+A\r", result, response));
  EXPECT_EQ(result, kxwan::kResultError);
  EXPECT_TRUE(modem.SendCommandGetResponse("AT+B\r", result, response));
  AwaitInput(modem, /*longestMs=*/1000);
  for (int i = 0; i < 5; ++i) {
    EXPECT_TRUE(modem.SendCommandGetResponse("AT+C\r", result, response));
    EXPECT_STREQ(response.String(), "third");
    EXPECT_TRUE(modem.SendCommandGetResponse("AT+B\r", result, response));
    EXPECT_STREQ(response.String(), "second");
  }
}

}  // namespace
