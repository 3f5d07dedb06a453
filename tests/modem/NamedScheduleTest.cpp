#include <benchmarks/model/ModelHost.h>
#include <gtest/gtest.h>

#include <vector>

using kxmodel::DeviceTraits;
using kxmodel::Family;
using kxmodel::LineTraits;
using kxmodel::Pauses;
using kxmodel::Seconds;

namespace {

// Devices that answer every command in order, only late, and dialogues of so many exchanges. None
// may get another's answer; so many may get none.
struct SlowDevice {
  const char* name;
  DeviceTraits device;
  uint32_t exchanges;
  uint64_t mostNone;
};

const SlowDevice kSlowDevices[] = {
    {"1.6 s, then .8 s", {.base = {.8, .8}, .firstTakes = 1.6}, 14, 0},
    {"3.5 s, then .7 s", {.base = {.7, .7}, .firstTakes = 3.5}, 14, 0},
    {"5 s, then .7 s", {.base = {.7, .7}, .firstTakes = 5}, 14, 1},
    {"10 s, then .3 s", {.base = {.3, .3}, .firstTakes = 10}, 14, 2},
    {"always .4 s", {.base = {.4, .4}}, 14, 0},
    {"always 1.4 s", {.base = {1.4, 1.4}}, 14, 0},
    {"always 1.6 s", {.base = {1.6, 1.6}}, 14, 13},
    {"always 2 s", {.base = {2, 2}}, 14, 13},
    {"always 2.5 s", {.base = {2.5, 2.5}}, 14, 13},
    {"8 % take 1.6 to 4.2 s", {.lateShare = .08, .late = {1.6, 4.2}}, 1553, 80},
};

TEST(NamedSchedule, SlowDevicesAreNeverAnsweredForAnother) {
  constexpr uint32_t kSessions = 30;  // with names and pauses of each kind
  for (const SlowDevice& row : kSlowDevices) {
    SCOPED_TRACE(row.name);
    const Family family = {.name = row.name, .device = row.device};
    for (uint32_t session = 0; session < kSessions; ++session) {
      kxmodel::Tally tally;
      kxmodel::Timeline timeline;
      kxmodel::Session(family, 1, session, row.exchanges, &timeline).Run(tally);
      EXPECT_EQ(tally.wrong, 0) << timeline.Text();
      EXPECT_LE(tally.none, row.mostNone) << timeline.Text();
      if (HasFailure()) return;
    }
  }
}

enum class Must { kBeRight, kHaveNone, kBeAnything };
enum class Before { kNothing, kNewSpeed, kReopen };

// What the host does, and what must come of it.
struct Step {
  const char* line;
  const char* text = "";
  const char* result = "OK";
  Seconds takes = -1;  // the first try
  bool lost = false;   // its answer
  bool once = false;
  Seconds timeout = 1.5;
  Seconds pause = 0;  // in front of it
  Before before = Before::kNothing;
  const char* says = nullptr;  // what the device says by itself, so long behind the pause's begin:
  Seconds saysAfter = 0;
  Seconds sleeps = 0;  // the host, in the middle of the answer
  Must must = Must::kBeRight;
  Seconds within = 4.51;
};

struct Story {
  const char* name;
  DeviceTraits device;
  LineTraits line;
  std::vector<Step> steps;
};

constexpr Step kSignal = {.line = "AT+CSQ", .text = "+CSQ: 20,99"};
constexpr Step kOperator = {.line = "AT+COPS?", .text = "+COPS: 0,0,\"net\""};
constexpr Step kMaker = {.line = "AT+CGMI", .text = "ACME"};
constexpr Step kModel = {.line = "AT+CGMM", .text = "M600"};
constexpr Step kCheck = {.line = "ATE0V1"};

Step Late(Step step, Seconds takes) {
  step.takes = takes;
  step.must = Must::kHaveNone;
  return step;
}

Step Behind(Before before, Step step) {
  step.before = before;
  return step;
}

Step AfterPause(Seconds pause, Step step) {
  step.pause = pause;
  return step;
}

const Story kStories[] = {
    {"a stray OK while nothing is asked",
     {},
     {},
     {kSignal,
      {.line = "AT+COPS?", .text = "+COPS: 0", .pause = 1, .says = "\r\nOK\r\n", .saysAfter = .5},
      kMaker,
      kModel,
      kCheck,
      kSignal}},
    {"ERROR and OK to one command, and a pause",
     {.bitsPerSecond = 9600},
     {},
     {kSignal,
      {.line = "ATZ", .result = "ERROR", .says = "\r\nOK\r\n", .saysAfter = .0011},
      AfterPause(.05, kSignal),
      kMaker,
      kModel,
      kCheck,
      kOperator}},
    // Nothing tells the OK from the answer to the command behind: it harms once.
    {"ERROR and OK to one command, and no pause",
     {.bitsPerSecond = 9600},
     {},
     {kSignal,
      {.line = "ATZ", .result = "ERROR", .says = "\r\nOK\r\n", .saysAfter = .0011},
      {.line = "AT+CSQ", .text = "+CSQ: 20,99", .must = Must::kBeAnything},
      AfterPause(.05, kMaker),
      kModel,
      kCheck,
      kOperator}},
    {"opened anew while an answer is owed that then comes",
     {.base = {.3, .3}},
     {},
     {kSignal, Late(kOperator, 6), Behind(Before::kReopen, kMaker), kModel, kCheck, kSignal,
      kOperator}},
    {"another speed while an answer is owed that then comes",
     {.base = {.3, .3}},
     {},
     {kSignal, Late(kOperator, 6), Behind(Before::kNewSpeed, kMaker), kModel, kCheck, kSignal,
      kOperator}},
    {"another speed while an answer is owed that never comes",
     {.base = {.3, .3}},
     {.otherSpeed = kxmodel::OtherSpeed::kRubbish, .deviceFollows = true},
     {kSignal, Late(kOperator, 6), Behind(Before::kNewSpeed, kMaker), kModel, kCheck, kSignal,
      kOperator}},
    {"a late state and a PIN that the card refuses",
     {.base = {.01, .01}},
     {},
     {Late({.line = "AT+CPIN?", .text = "+CPIN: SIM PIN"}, 6),
      {.line = "AT+CPIN=\"1234\"",
       .result = "+CME ERROR: 16",
       .once = true,
       .timeout = 20,
       .within = 4},
      kSignal}},
    {"an answer was lost before a command that goes once",
     {},
     {},
     {kSignal,
      {.line = "AT+CGMM", .text = "M600", .lost = true},
      {.line = "AT+CFUN=1", .once = true, .timeout = 20, .within = 1},
      kMaker}},
    {"a command that went once was lost, and another goes",
     {},
     {},
     {kSignal,
      {.line = "AT+CFUN=1", .lost = true, .once = true, .must = Must::kHaveNone},
      {.line = "AT+CPIN=\"1234\"", .once = true, .timeout = 20, .within = 1},
      kMaker}},
    {"the host sleeps in the middle of an answer",
     {.bitsPerSecond = 1200},
     {},
     {kSignal,
      {.line = "AT+COPS?", .text = "+COPS: 0,0,\"a long name\"", .sleeps = 1.7},
      kMaker,
      kModel,
      kCheck}},
};

kxmodel::Verdict Take(const Step& step, kxmodel::Talk& talk) {
  kxmodel::ModelLine& line = talk.Port();
  kxmodel::Question& question = talk.Prepare(step.line, step.text, step.result);
  question.takes = step.takes;
  question.lost = step.lost;
  if (step.says != nullptr) talk.Device().Say(step.says, line.Now() + step.saysAfter);
  line.Pause(step.pause);
  if (step.before == Before::kReopen) line.Reopen();
  if (step.before == Before::kNewSpeed) line.SetSpeed(57600);
  line.SleepBehindBytes(step.sleeps);
  return step.once ? talk.ExchangeOnce(step.timeout, /*settlement=*/3)
                   : talk.Exchange(step.timeout, /*tries=*/3);
}

TEST(NamedSchedule, StoriesEndWell) {
  for (const Story& story : kStories) {
    kxmodel::Timeline timeline;
    kxmodel::Talk talk(story.device, story.line, /*seed=*/1, &timeline);
    for (const Step& step : story.steps) {
      const kxmodel::Verdict verdict = Take(step, talk);
      const bool fits = step.must == Must::kBeAnything ||
                        (step.must == Must::kBeRight ? verdict.right : !verdict.answered);
      EXPECT_TRUE(fits) << story.name << ", " << step.line << ":\n" << timeline.Text();
      EXPECT_LE(verdict.took, step.within) << story.name << ", " << step.line << ":\n"
                                           << timeline.Text();
    }
  }
}

}  // namespace
