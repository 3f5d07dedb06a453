#include <benchmarks/model/ModelSettlement.h>
#include <gtest/gtest.h>
#include <tests/modem/FaultyRuns.h>

#include <cmath>
#include <string>

using kxmodel::SettleFamily;
using kxmodel::SettleTally;

namespace {

constexpr uint64_t kSeed = 1;
constexpr uint32_t kRuns = 1000;
constexpr double kChance = 3;

// Of the classic exchanges on a line that stayed in doubt.
constexpr double kMostQueriesWrong = .003;

std::string Faults(const SettleFamily& family, const SettleTally& tally) {
  return FaultyRuns(family, kSeed, tally, kxmodel::RunSettlement);
}

// What goes once goes only behind a line that is settled, and has its own answer or none.
TEST(SettleSchedule, NeverGivesAnotherAnswer) {
  for (const SettleFamily& family : kxmodel::SettleFamilies()) {
    SCOPED_TRACE(family.name);
    SettleTally tally = kxmodel::RunSettlements(family, kSeed, kRuns);
    EXPECT_EQ(tally.wrong, 0) << Faults(family, tally);
    EXPECT_EQ(tally.slipped, 0) << Faults(family, tally);
    EXPECT_EQ(tally.sentInDoubt, 0) << Faults(family, tally);
    EXPECT_EQ(tally.sentTwice, 0) << Faults(family, tally);
    const double lines = static_cast<double>(tally.lines);
    EXPECT_GE(lines, kRuns / 10.);
    // A share of so few lines may miss by chance.
    EXPECT_GE(static_cast<double>(tally.settled) + kChance, family.settled * lines);
    EXPECT_LE(tally.Median(), family.median);
    EXPECT_LE(static_cast<double>(tally.queriesWrong),
              std::ceil(kMostQueriesWrong * static_cast<double>(tally.queries)));
  }
}

}  // namespace
