#include <KXWAN/modem/CSModem.h>
#include <KXWAN/modem/ConversationPrivate.h>
#include <gtest/gtest.h>
#include <tests/support/ScriptedDevice.h>
#include <tests/support/Waiting.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr unsigned long kLongMs = 20000;

// Gives the pieces of what a device says, one each time it is looked at.
class PieceLine : public kxwan::Line {
 public:
  explicit PieceLine(std::vector<std::string> pieces) : pieces_(std::move(pieces)) {}

  kxwan::Seconds Now() override { return now_; }
  Heard Receive(kxwan::Seconds until) override {
    if (next_ < pieces_.size()) return {pieces_[next_++], now_};
    now_ = std::max(now_, until);
    return {{}, now_};
  }
  bool Write(std::string_view) override { return true; }
  bool SetSpeed(unsigned long) override { return true; }
  bool GetSpeed(unsigned long&) override { return false; }
  bool TakeChange() override { return false; }
  void NoteTimeout() override {}

 private:
  const std::vector<std::string> pieces_;
  size_t next_ = 0;
  kxwan::Seconds now_ = 0;
};

std::string TextOf(int result, std::string_view text) {
  return std::to_string(result) + " " + std::string(text);
}

// What so many commands that are sent at once get.
std::vector<std::string> AnswersTo(const std::vector<std::string>& pieces, int commands) {
  PieceLine line(pieces);
  kxwan::Conversation conversation(line);
  for (int i = 0; i < commands; ++i) EXPECT_TRUE(conversation.Send("AT+A\r"));
  std::vector<std::string> answers;
  for (int i = 0; i < commands; ++i) {
    const bool came = conversation.Listen(1);
    const std::string_view text = came ? conversation.Result().text : conversation.Unfinished();
    answers.push_back(TextOf(conversation.Result().result, text));
  }
  return answers;
}

// A host that is late may find any of it together, and the rest at any time.
TEST(SendAndListen, GiveTheNextResultWhereverWhatComesIsCut) {
  const std::string all = "\r\nfirst\r\n\r\nOK\r\n\r\n+CME ERROR: 3\r\n\r\nth\r\nird\r\n\r\nOK\r\n";
  const std::vector<std::string> expected = {"0 first", "101 3", "0 th\r\nird"};
  for (size_t cut = 0; cut <= all.size(); ++cut) {
    for (size_t next = cut; next <= all.size(); ++next) {
      ASSERT_EQ(AnswersTo({all.substr(0, cut), all.substr(cut, next - cut), all.substr(next)}, 3),
                expected)
          << "cut at " << cut << " and " << next;
    }
  }
}

TEST(SendAndListen, GiveNothingTwice) {
  PieceLine line({"\r\nhalf"});
  kxwan::Conversation conversation(line);
  EXPECT_FALSE(conversation.Listen(1));
  EXPECT_EQ(conversation.Unfinished(), "\r\nhalf");
  EXPECT_FALSE(conversation.Listen(1));
  EXPECT_EQ(conversation.Unfinished(), "");
}

// The next result that comes, with its text: "0 first".
std::string Next(CSModem& modem) {
  int result = -1;
  CString response;
  modem.GetResponse(result, response, kLongMs);
  return TextOf(result, response.String());
}

// A result that waited before the command was sent is the next one, too.
TEST(SendAndListen, GiveWhatWaited) {
  kxsim::Profile profile = kxsim::ScriptedProfile({{"AT+A", "first"}, {"AT+B", "second"}});
  profile.faults = {{.kind = "between", .at = 1, .ms = 100, .text = "OK"}};
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
