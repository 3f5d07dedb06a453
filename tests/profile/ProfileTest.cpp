#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <profile/BuiltInProfiles.h>
#include <profile/Faults.h>
#include <profile/Profile.h>
#include <tests/support/Host.h>

#include <iterator>
#include <random>

namespace kxsim {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::string Complaint(const Result& failure) {
  return failure ? failure->sentence : "no complaint";
}

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
    {"[[faults]]\nkind = \"fire\"",
     "bad.toml:2: unknown fault \"fire\"; expected one of pieces, pace"},
    {"[[faults]]\nkind = \"late\"", "bad.toml:1: the fault \"late\" needs \"ms\" from 1"},
    {"[[faults]]\nkind = \"late\"\nms = \"5\"", "bad.toml:3: \"ms\": expected milliseconds from 0"},
    {"[[faults]]\nkind = \"lost\"\nms = 5",
     "bad.toml:3: the fault \"lost\" has no \"ms\"; it takes"},
    {"[[faults]]\nkind = 3", "bad.toml:2: \"kind\": expected a text"},
    {"faults = [1]", "bad.toml:1: \"faults\": expected sections [[faults]]"},
    {"[[faults]]\nrate = 0.5", "a fault without \"kind\""},
    {"[[faults]]\nkind = \"late\"\nrate = 2",
     "bad.toml:3: \"rate\": expected a number from 0 to 1"},
    {"[faults]\nkind = \"late\"", "bad.toml:1: \"faults\": expected sections [[faults]]"},
    {"[line]\nlatency = 1e999", "bad.toml:2: expected a number from -2000000000 to 2000000000"},
    {"[line]\nlatency = 99999999999999999999", "bad.toml:2: expected a number from -2000000000 to"},
    {"[expect\n", "bad.toml:1: "},
    {"\x01", "bad.toml:1: "},
};

TEST(Profile, NamesFileLineAndWhatWasExpected) {
  for (const BadProfile& row : kBadProfiles) {
    Profile profile;
    EXPECT_THAT(Complaint(ParseProfile(row.toml, "bad.toml", profile)), HasSubstr(row.error));
  }
}

struct BadFile {
  const char* name;
  const char* error;
};

const BadFile kBadFiles[] = {
    {"no-such-device", "there is no profile \"no-such-device\"; there are: cdma-"},
    {"/nowhere/a.toml", "/nowhere/a.toml: No such file or directory"},
    {"/dev/null", "/dev/null: the file is empty"},
    {"/", "/: Is a directory"},
};

TEST(Profile, SaysWhereItLooked) {
  for (const BadFile& row : kBadFiles) {
    Profile profile;
    EXPECT_THAT(Complaint(LoadProfile(row.name, profile)), StartsWith(row.error));
  }
}

struct BadFault {
  const char* words;
  const char* error;
};

const BadFault kBadFaults[] = {
    {"fire", "unknown fault \"fire\"; expected one of pieces, pace"},
    {"", "unknown fault \"\""},
    {"late", "the fault \"late\" needs \"ms\" from 1 to 1000000"},
    {"late,ms=0", "the fault \"late\" needs \"ms\""},
    {"late,minutes=3", "the fault \"late\" has no \"minutes\"; it takes at, rate, ms"},
    {"lost,ms=3", "the fault \"lost\" has no \"ms\"; it takes at, rate"},
    {"late,ms", "\"ms\": expected milliseconds from 0 to 1000000"},
    {"late,ms=-1", "\"ms\": expected milliseconds"},
    {"late,ms=1.5", "\"ms\": expected milliseconds"},
    {"lost,rate=1.5", "\"rate\": expected a number from 0 to 1"},
    {"lost,rate=nan", "\"rate\": expected a number from 0 to 1"},
    {"lost,rate=1x", "\"rate\": expected a number from 0 to 1"},
    {"lost,at=2000000", "\"at\": expected a whole number from 0 to 1000000"},
    {"lost,at=1e999", "\"at\": expected a whole number from 0 to 1000000"},
};

TEST(Fault, SaysWhatWasExpected) {
  for (const BadFault& row : kBadFaults) {
    Fault fault;
    EXPECT_THAT(Complaint(ParseFault(row.words, fault)), StartsWith(row.error)) << row.words;
  }
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

// Not all fields: what is written in the same way is the same.
void ExpectSame(const Profile& one, const Profile& other) {
  EXPECT_EQ(FormatProfile(one), FormatProfile(other));
  EXPECT_EQ(one.scripted, other.scripted);
  EXPECT_EQ(one.line.echo, other.line.echo);
  ASSERT_EQ(one.replies.size(), other.replies.size());
}

TEST(Profile, SurvivesWriting) {
  for (const BuiltInProfile* row = kBuiltInProfiles; row->name != nullptr; ++row) {
    SCOPED_TRACE(row->name);
    const Profile profile = ProfileNamed(row->name);
    ExpectSame(profile, ProfileOf(FormatProfile(profile)));
  }
  const std::string text =
      "families = [\"gsm\"]\n"
      "\n[identity]\nmodel = \"a \\\"b\\\" \\\\ \\u00E9\"\npages = { 0 = \"x\", 3 = \"y\\nz\" }\n"
      "\n[radio]\nsignal = [[0, 1], [5, 2]]\n"
      "\n[[faults]]\nkind = \"between\"\nat = 3\nrate = 1e-07\nms = 5\ntext = \"t\"\n";
  EXPECT_EQ(FormatProfile(ProfileOf(text)), text);
}

// Any bytes, with those among them that mean something to a profile.
class Bytes {
 public:
  std::string Text() {
    std::string text;
    for (size_t left = Below(6); left > 0; --left) {
      constexpr const char* kSpecial[] = {"\n",    "\r\n",      "OK",      "ERROR",
                                          "(raw)", "(silence)", "\xC3\xA9"};
      if (Below(3) == 0) {
        text += kSpecial[Below(std::size(kSpecial))];
      } else {
        text += static_cast<char>(Below(256));
      }
    }
    return text;
  }
  Answer NextAnswer() {
    const int latency = static_cast<int>(Below(3));
    if (Below(3) > 0)
      return {.text = Text(), .result = Below(2) > 0 ? "OK" : Text(), .latencyMs = latency};
    Answer answer = {.result = "", .raw = {}, .latencyMs = latency, .gapMs = latency};
    for (size_t left = 1 + Below(3); left > 0; --left) answer.raw.push_back(Text());
    return answer;
  }
  size_t Below(size_t limit) { return engine_() % limit; }

 private:
  std::mt19937 engine_{20261122};
};

TEST(Profile, KeepsEveryByteOfATextAndAReply) {
  Bytes bytes;
  for (int run = 0; run < 2000; ++run) {
    Profile profile;
    profile.identity.model = bytes.Text();
    profile.expect.model = bytes.Text();
    profile.faults = {{.kind = "rubbish", .text = bytes.Text()}};
    for (int i = 0; i < 3; ++i) AddReply(profile, bytes.Text(), bytes.NextAnswer());
    const std::string text = FormatProfile(profile);
    SCOPED_TRACE(text);
    const Profile again = ProfileOf(text);
    EXPECT_EQ(again.identity.model, profile.identity.model);
    EXPECT_EQ(again.expect.model, profile.expect.model);
    EXPECT_EQ(again.faults.at(0).text, profile.faults[0].text);
    ASSERT_EQ(again.replies.size(), profile.replies.size());
    for (size_t i = 0; i < again.replies.size(); ++i) {
      EXPECT_EQ(again.replies[i].command, profile.replies[i].command);
      EXPECT_TRUE(again.replies[i].answers == profile.replies[i].answers);
    }
    if (HasFailure()) return;
  }
}

}  // namespace
}  // namespace kxsim
