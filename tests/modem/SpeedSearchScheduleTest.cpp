#include <KXWAN/handset/SpeedSearchPrivate.h>
#include <benchmarks/model/ModelSearch.h>
#include <benchmarks/model/ModelTalk.h>
#include <gtest/gtest.h>
#include <tests/modem/FaultyRuns.h>

#include <string>

using kxmodel::SearchFamily;
using kxmodel::SearchTally;

namespace {

constexpr uint64_t kSeed = 1;
constexpr uint32_t kRuns = 2000;

std::string Faults(const SearchFamily& family, const SearchTally& tally) {
  return FaultyRuns(family, kSeed, tally, kxmodel::RunSearch);
}

TEST(SpeedSearchSchedule, FindsTheDevicesSpeedAndNoOther) {
  for (const SearchFamily& family : kxmodel::SearchFamilies()) {
    SCOPED_TRACE(family.name);
    SearchTally tally = kxmodel::RunSearches(family, kSeed, kRuns);
    EXPECT_EQ(tally.wrongSpeed, 0) << Faults(family, tally);
    EXPECT_EQ(tally.slipped, 0) << Faults(family, tally);
    EXPECT_GE(static_cast<double>(tally.found), family.found * kRuns) << Faults(family, tally);
    EXPECT_GE(static_cast<double>(tally.right),
              family.right * static_cast<double>(tally.found * kxmodel::kQueriesBehindSearch));
    EXPECT_LE(tally.TimeOf(.5), family.median);
    EXPECT_LE(tally.TimeOf(1), family.longest);
  }
}

// A device that sleeps works off the tags of every search when it wakes. What is sent behind the
// search that finds it must have its own answer.
TEST(SpeedSearchSchedule, TrustsNoAnswerToAnEarlierSearch) {
  constexpr int kSearches = 6;
  for (uint32_t run = 0; run < kRuns; ++run) {
    const double base = run % 2 == 0 ? .3 : .7;
    kxmodel::Talk talk({.base = {base, base}, .wakesAt = {10, 40}}, {}, kSeed + run, nullptr);
    unsigned long speed = 0;
    for (int i = 0; i < kSearches && !kxwan::SearchSpeed(talk.Conversation(), speed); ++i) {
      talk.Port().Pause(talk.Numbers().Within({0, 3}));
    }
    talk.Prepare("AT+CPIN=\"1234\"", "", "+CME ERROR: 16");
    const kxmodel::Verdict pin = talk.ExchangeSurely(10);
    EXPECT_TRUE(!pin.answered || pin.right) << "run " << run;
    talk.Prepare("AT+CSQ", "+CSQ: 7", "OK");
    const kxmodel::Verdict signal = talk.ExchangeOnce(5, 3);
    EXPECT_TRUE(!signal.answered || signal.right) << "run " << run;
    EXPECT_GT(speed, 0) << "run " << run;
  }
}

}  // namespace
