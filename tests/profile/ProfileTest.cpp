#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <profile/BuiltInProfiles.h>
#include <profile/Profile.h>
#include <tests/support/Host.h>

namespace kxsim {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

struct BadProfile {
  const char* toml;
  const char* error;
};

const BadProfile kBadProfiles[] = {
    {"[line]\nbaud = 19201", "bad.toml:2: \"baud\": expected a line speed"},
    {"[line]\nbaud = \"19200\"", "bad.toml:2: \"baud\""},
    {"[line]\nbaud = 9600\nbaud = 19200", "bad.toml:3: "},
    {"[line]\nspeeds = [9600, 1]", "bad.toml:2: \"speeds\""},
    {"[line]\nlatency = -1", "bad.toml:2: \"latency\": expected milliseconds"},
    {"[line]\nspeed = 1", "unknown key \"speed\"; expected one of baud, speeds"},
    {"[lines]\n", "bad.toml:1: unknown key \"lines\"; expected one of description"},
    {"line = 3", "bad.toml:1: unknown key \"line\""},
    {"families = [\"gsm\", \"lte\"]", "bad.toml:1: \"families\": expected a list of \"gsm\""},
    {"[sim]\nstate = \"open\"", "bad.toml:2: \"state\": expected \"none\", \"ready\""},
    {"[sim]\npin = \"12a4\"", "bad.toml:2: \"pin\": expected a text of four digits"},
    {"[radio]\nsignal = [[5, 20], [0, 3]]", "bad.toml:2: \"signal\""},
    {"[radio]\nsignal = [[0, 100]]", "bad.toml:2: \"signal\""},
    {"[radio]\nsignal = []", "bad.toml:2: \"signal\""},
    {"[packet]\ncontexts = { 0 = \"a\" }", "bad.toml:2: \"contexts\""},
    {"[identity]\npages = { x = \"a\" }", "bad.toml:2: \"pages\""},
    {"[replies]\n\"AT\" = 3", "bad.toml:2: \"AT\": expected an answer"},
    {"[replies]\n\"AT\" = []", "bad.toml:2: \"AT\": expected an answer"},
    {"[replies]\n\"AT\" = { txt = \"\" }", "bad.toml:2: \"AT\": expected an answer"},
    {"replies = 1", "bad.toml:1: expected a table of commands"},
    {"[[faults]]\nkind = \"fire\"", "bad.toml:2: \"kind\": expected the name of a fault, one of"},
    {"[[faults]]\nrate = 0.5", "a fault without \"kind\""},
    {"[[faults]]\nkind = \"late\"\nrate = 2",
     "bad.toml:3: \"rate\": expected a number from 0 to 1"},
    {"[faults]\nkind = \"late\"", "bad.toml:1: \"faults\": expected sections [[faults]]"},
    {"[expect\n", "bad.toml:1: "},
    {"\x01", "bad.toml:1: "},
};

TEST(Profile, NamesFileLineAndWhatWasExpected) {
  for (const BadProfile& row : kBadProfiles) {
    SCOPED_TRACE(row.toml);
    Profile profile;
    std::string error;
    EXPECT_FALSE(ParseProfile(row.toml, "bad.toml", profile, error));
    EXPECT_THAT(error, HasSubstr(row.error));
  }
}

TEST(Profile, SaysWhereItLooked) {
  Profile profile;
  std::string error;
  EXPECT_FALSE(LoadProfile("no-such-device", profile, error));
  EXPECT_THAT(error, HasSubstr("gprs-phone, "));
  EXPECT_FALSE(LoadProfile("/nowhere/a.toml", profile, error));
  EXPECT_EQ(error, "/nowhere/a.toml: No such file or directory");
  EXPECT_FALSE(LoadProfile("/dev/null", profile, error));
  EXPECT_EQ(error, "/dev/null: the file is empty");
}

struct ShortAnswer {
  const char* written;
  const char* text;
  const char* result;
  std::vector<std::string> raw;
};

const ShortAnswer kShortAnswers[] = {
    {"+CSQ: 1,2", "+CSQ: 1,2", "OK", {}},
    {"", "", "OK", {}},
    {"OK", "", "OK", {}},
    {"ERROR", "", "ERROR", {}},
    {"+CME ERROR: 10", "", "+CME ERROR: 10", {}},
    {"a\nb\n+CMS ERROR: 500", "a\nb", "+CMS ERROR: 500", {}},
    {"ERROR\nb", "ERROR\nb", "OK", {}},
    {"(silence)", "", "", {}},
    {"(raw)\r\nOK\r\n", "", "", {"\r\nOK\r\n"}},
};

TEST(Profile, ReadsTheShortFormOfAnAnswer) {
  for (const ShortAnswer& row : kShortAnswers) {
    SCOPED_TRACE(row.written);
    const Answer answer = ParseAnswer(row.written);
    EXPECT_EQ(answer.text, row.text);
    EXPECT_EQ(answer.result, row.result);
    EXPECT_EQ(answer.raw, row.raw);
  }
}

TEST(Profile, ReadsTheLongFormOfAnAnswer) {
  const Profile profile = ProfileOf(
      "[replies]\n"
      "\"AT+A\" = { text = \"a\", result = \"\", latency = 7 }\n"
      "\"AT+B\" = [\"b\", { raw = [\"\\u0000\\u00E9\", \"z\"], gap = 3 }]\n");
  ASSERT_EQ(profile.replies.size(), 2U);
  const Answer& a = profile.replies[0].answers.at(0);
  EXPECT_EQ(a.text + "|" + a.result + "|" + std::to_string(a.latencyMs), "a||7");
  const Answer& b = profile.replies[1].answers.at(1);
  EXPECT_THAT(b.raw, ElementsAre(std::string("\0\xE9", 2), "z"));
  EXPECT_EQ(b.gapMs, 3);
}

void ExpectToSurviveWriting(const Profile& profile) {
  SCOPED_TRACE(profile.name);
  const std::string text = FormatProfile(profile);
  Profile again;
  std::string error;
  ASSERT_TRUE(ParseProfile(text, profile.name + ".toml", again, error)) << error << "\n" << text;
  EXPECT_EQ(FormatProfile(again), text);
  EXPECT_EQ(again.replies.size(), profile.replies.size());
  EXPECT_EQ(again.scripted, profile.scripted);
  EXPECT_EQ(again.line.echo, profile.line.echo);
}

TEST(Profile, SurvivesWriting) {
  for (const BuiltInProfile* row = kBuiltInProfiles; row->name != nullptr; ++row) {
    Profile profile;
    std::string error;
    ASSERT_TRUE(LoadProfile(row->name, profile, error)) << error;
    ExpectToSurviveWriting(profile);
  }
  ExpectToSurviveWriting(ProfileOf(
      "families = [\"gsm\"]\n"
      "[identity]\nmodel = \"a \\\"b\\\" \\\\ é\"\npages = { 0 = \"x\", 3 = \"y\\nz\" }\n"
      "[radio]\nsignal = [[0, 1], [5, 2]]\n"
      "[[faults]]\nkind = \"flip\"\nrate = 0.25\nat = 3\nbytes = 4\nms = 5\ntext = \"t\"\n"));
}

TEST(Profile, KeepsEveryByteOfAReply) {
  const std::vector<Answer> answers = {
      {.text = "\x80\xC3\xA9\xFF\x7F\x01\"\\"},
      {.text = "+CME ERROR: 3"},
      {.text = "(silence)"},
      {.result = ""},
      {.text = "a", .result = ""},
      {.result = "", .raw = {std::string("\0\r\n", 3), "b"}, .latencyMs = 5, .gapMs = 6},
  };
  Profile profile;
  for (const Answer& answer : answers) AddReply(profile, "AT+\"X\"", answer);
  const Profile again = ProfileOf(FormatProfile(profile));
  ASSERT_EQ(again.replies.size(), 1U);
  ASSERT_EQ(again.replies[0].answers.size(), answers.size());
  for (size_t i = 0; i < answers.size(); ++i) {
    SCOPED_TRACE(i);
    const Answer& answer = again.replies[0].answers[i];
    EXPECT_EQ(answer.text, answers[i].text);
    EXPECT_EQ(answer.result, answers[i].result);
    EXPECT_EQ(answer.raw, answers[i].raw);
    EXPECT_EQ(answer.latencyMs, answers[i].latencyMs);
    EXPECT_EQ(answer.gapMs, answers[i].gapMs);
  }
}

}  // namespace
}  // namespace kxsim
