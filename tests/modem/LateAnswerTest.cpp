#include <KXWAN/modem/CSModem.h>
#include <KXWAN/modem/SingleExchange.h>
#include <gtest/gtest.h>
#include <tests/support/ScriptedDevice.h>

using namespace std::string_literals;
using kxwan::kResultEquipmentError;
using kxwan::kResultError;
using kxwan::kResultOk;
using kxwan::kResultTimeout;

namespace {

kxsim::Answer Half(const std::string& bytes) {
  kxsim::Answer answer;
  answer.raw = {bytes};
  return answer;
}

kxsim::Answer Late(const std::string& text, int latencyMs) {
  kxsim::Answer answer = kxsim::ParseAnswer(text);
  answer.latencyMs = latencyMs;
  return answer;
}

// A row is a dialogue: each command with what the device sends for it, how long it is waited for (a
// wait ends at the next tenth of a second), and what must come of it.
struct DialogueStep {
  const char* command;
  kxsim::Answer answer;
  uint32_t timeoutMs;
  int result;
  std::string response;
};

struct DialogueCase {
  const char* name;
  int tries;
  std::vector<DialogueStep> steps;
};

const DialogueCase kDialogues[] = {
    {"a late answer is not the next command's",
     1,
     {{"AT1", Late("one", 400), 50, kResultTimeout, ""},
      {"AT2", Late("two", 0), 3000, kResultOk, "two"},
      {"AT3", Late("three", 0), 3000, kResultOk, "three"}}},
    {"late errors are told apart too",
     1,
     {{"AT1", Late("+CME ERROR: 10", 400), 50, kResultTimeout, ""},
      {"AT2", Late("ERROR", 0), 3000, kResultError, ""},
      {"AT3", Late("+CMS ERROR: 3", 0), 3000, kResultEquipmentError, "3"}}},
    {"two late answers",
     1,
     {{"AT1", Late("one", 700), 50, kResultTimeout, ""},
      {"AT2", Late("two", 0), 50, kResultTimeout, ""},
      {"AT3", Late("three", 0), 3000, kResultOk, "three"}}},
    {"a lost answer costs one time-out and then nothing",
     1,
     {{"AT1", kxsim::ParseAnswer("(silence)"), 50, kResultTimeout, ""},
      {"AT2", Late("two", 0), 500, kResultOk, "two"},
      {"AT3", Late("three", 0), 3000, kResultOk, "three"}}},
    {"a retry takes the first answer and leaves the rest owed",
     3,
     {{"AT1", Late("one", 400), 150, kResultOk, "one"},
      {"AT2", Late("two", 0), 3000, kResultOk, "two"},
      {"AT3", Late("three", 0), 3000, kResultOk, "three"}}},
    {"a partial reply stays after a time-out",
     1,
     {{"AT1", Half("\r\nhalf"), 300, kResultTimeout, "\r\nhalf"},
      {"AT2", Late("two", 0), 500, kResultOk, "two"}}},
};

TEST(LateAnswer, IsNotTheNextCommands) {
  for (const DialogueCase& row : kDialogues) {
    SCOPED_TRACE(row.name);
    kxsim::Profile profile = kxsim::ScriptedProfile({});
    for (const DialogueStep& step : row.steps) {
      kxsim::AddReply(profile, step.command, step.answer);
    }
    ScriptedDevice device(profile);
    CSModem* modem = device.Modem();
    modem->m_nRetries = row.tries;
    for (const DialogueStep& step : row.steps) {
      SCOPED_TRACE(step.command);
      int result = -1;
      CString response;
      const std::string command = step.command + "\r"s;
      modem->m_dwResponseTimeout = step.timeoutMs;
      EXPECT_EQ(modem->SendCommandGetResponse(command.c_str(), result, response),
                step.result != kResultTimeout);
      EXPECT_EQ(result, step.result);
      EXPECT_STREQ(response.String(), step.response.c_str());
    }
  }
}

TEST(LateAnswer, CanBeWaitedForOn) {
  kxsim::Profile profile = kxsim::ScriptedProfile({{"AT2", "two"}});
  kxsim::AddReply(profile, "AT1", Late("one", 400));
  ScriptedDevice device(profile);
  int result = -1;
  CString response;
  EXPECT_FALSE(kxwan::SendOnce(device.Modem(), "AT1\r", 50, result, response));
  EXPECT_TRUE(device.Modem()->GetResponse(result, response, 3000));
  EXPECT_STREQ(response.String(), "one");
  EXPECT_TRUE(kxwan::SendOnce(device.Modem(), "AT2\r", 3000, result, response));
  EXPECT_STREQ(response.String(), "two");
}

// Every command of this device times out at first, and the host's retries come faster than it works
// them off. A command may then fail, but not with another one's answer.
TEST(LateAnswer, OfASteadilySlowDeviceIsNeverAnotherCommands) {
  constexpr int kCommands = 6;
  kxsim::Profile profile = kxsim::ScriptedProfile({});
  for (int i = 0; i < kCommands; ++i) {
    kxsim::AddReply(profile, "AT" + std::to_string(i), Late("answer " + std::to_string(i), 280));
  }
  ScriptedDevice device(profile);
  device.Modem()->m_dwResponseTimeout = 150;
  int answered = 0;
  for (int i = 0; i < kCommands; ++i) {
    int result = -1;
    CString response;
    const std::string command = "AT" + std::to_string(i) + "\r";
    if (!device.Modem()->SendCommandGetResponse(command.c_str(), result, response)) continue;
    ++answered;
    EXPECT_EQ(response.String(), "answer " + std::to_string(i));
  }
  EXPECT_GT(answered, 0);
}

// Where the speed means nothing, what was asked at another speed is answered all the same. Such
// answers are passed over, and a line that gives none is not waited for.
TEST(LateAnswer, FromBeforeAChangeOfTheLineIsPassedOver) {
  for (const bool reopen : {false, true}) {
    for (const char* first : {"one", "(silence)"}) {
      SCOPED_TRACE(first);
      kxsim::Profile profile = kxsim::ScriptedProfile({{"AT2", "two"}, {"AT3", "three"}});
      kxsim::AddReply(profile, "AT1", Late(first, 400));
      ScriptedDevice device(profile);
      CSModem* modem = device.Modem();
      int result = -1;
      CString response;
      EXPECT_FALSE(kxwan::SendOnce(modem, "AT1\r", 30, result, response));
      if (reopen) {
        modem->m_pSerial->Close();
        ASSERT_TRUE(modem->m_pSerial->Open(device.Path().c_str()));
      } else {
        ASSERT_TRUE(modem->m_pSerial->SetDataFormat(57600, -1, -1, -1));
      }
      for (const auto& [command, answer] : {std::pair("AT2\r", "two"), {"AT3\r", "three"}}) {
        EXPECT_TRUE(kxwan::SendOnce(modem, command, 5000, result, response));
        EXPECT_STREQ(response.String(), answer);
      }
    }
  }
}

}  // namespace
