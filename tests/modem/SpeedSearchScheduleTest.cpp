#include <benchmarks/model/ModelSearch.h>
#include <gtest/gtest.h>

#include <string>

using kxmodel::SearchFamily;
using kxmodel::SearchTally;

namespace {

constexpr uint64_t kSeed = 1;
constexpr uint32_t kRuns = 2000;

std::string Faults(const SearchFamily& family, const SearchTally& tally) {
  std::string text;
  for (const uint32_t run : tally.faults) {
    kxmodel::Timeline timeline;
    SearchTally ignored;
    kxmodel::RunSearch(family, kSeed, run, &timeline, ignored);
    text += "seed " + std::to_string(kSeed) + ", run " + std::to_string(run) + ":\n" +
            timeline.Text() + '\n';
  }
  return text;
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

}  // namespace
