#include <benchmarks/model/ScheduleFamilies.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <iterator>
#include <ostream>

using kxmodel::Family;
using kxmodel::Tally;

namespace kxmodel {

// In the names of the tests.
void PrintTo(const Family& family, std::ostream* out) { *out << family.name; }

}  // namespace kxmodel

namespace {

constexpr uint64_t kSeed = 1;
constexpr uint64_t kExchanges = 50000;  // of each family

// Of a million exchanges with a device that has said all it owes and is prompt again.
constexpr double kMostCalmNone = 200;

double ShareOf(uint64_t part, uint64_t whole) {
  return whole > 0 ? static_cast<double>(part) / static_cast<double>(whole) : 0;
}

double PerMillion(uint64_t part, uint64_t whole) { return 1e6 * ShareOf(part, whole); }

// So few exchanges may be above a limit that a million keep: by three standard deviations. What
// must never happen must not happen here either.
double Most(double perMillion, uint64_t exchanges) {
  const double expected = perMillion * static_cast<double>(exchanges) / 1e6;
  return expected + 3 * std::sqrt(expected);
}

// The last exchange before the fault as it went, and the fault.
std::string Replayed(const Family& family, const kxmodel::Place& place) {
  constexpr size_t kEnough = 3000;
  kxmodel::Timeline timeline;
  Tally ignored;
  kxmodel::Session(family, kSeed, place.session, place.exchange, &timeline).Run(ignored);
  const std::string& text = timeline.Text();
  return text.substr(text.size() > kEnough ? text.find('\n', text.size() - kEnough) + 1 : 0);
}

std::string Faults(const Family& family, const Tally& tally) {
  std::string text;
  for (const kxmodel::Place& place : tally.faults) {
    text += "seed " + std::to_string(kSeed) + ", session " + std::to_string(place.session) +
            ", exchange " + std::to_string(place.exchange) + ":\n" + Replayed(family, place) + '\n';
  }
  return text;
}

std::string NameOf(const testing::TestParamInfo<Family>& info) {
  std::string name;
  for (const char* at = info.param.name; *at != '\0'; ++at) {
    if (std::isalnum(static_cast<unsigned char>(*at)) != 0) name += *at;
  }
  return name;
}

class Schedule : public testing::TestWithParam<Family> {};

TEST_P(Schedule, KeepsItsLimits) {
  const Family& family = GetParam();
  const Tally tally = kxmodel::RunFamily(family, kSeed, kExchanges);
  const kxmodel::Limits& limits = family.limits;
  EXPECT_LE(static_cast<double>(tally.wrong), Most(limits.wrong, tally.exchanges))
      << Faults(family, tally);
  EXPECT_EQ(tally.setsSentAgain, 0) << Faults(family, tally);
  EXPECT_LE(static_cast<double>(tally.setsWrong), Most(limits.setsWrong, tally.sets))
      << Faults(family, tally);
  EXPECT_LE(PerMillion(tally.none, tally.exchanges), limits.none);
  if (kxmodel::AnswersAll(family) && family.host.lineChanges == 0) {
    EXPECT_LE(PerMillion(tally.calmNone, tally.calm), kMostCalmNone);
  }
  EXPECT_LE(ShareOf(tally.sends, tally.exchanges), limits.sends);
  EXPECT_LE(tally.extra / static_cast<double>(tally.right), limits.extra);
  EXPECT_GE(ShareOf(tally.behindOnce, tally.behindIgnored), limits.behindOnce);
  EXPECT_GE(ShareOf(tally.behindInTime, tally.behindIgnored), limits.behindInTime);
  EXPECT_LE(tally.longest, limits.longest);
  EXPECT_LE(tally.mostIdleReads, 3) << "the host spins";
}

INSTANTIATE_TEST_SUITE_P(Model, Schedule,
                         testing::ValuesIn(kxmodel::ScheduleFamilies().begin(),
                                           kxmodel::ScheduleFamilies().end()),
                         NameOf);

// With as many exchanges in each family that is also the mean of what came.
TEST(ScheduleLimits, AllowFiftyWrongInAMillionWhereEveryCommandIsAnswered) {
  double sum = 0;
  int families = 0;
  for (const Family& family : kxmodel::ScheduleFamilies()) {
    if (!kxmodel::AnswersAll(family)) continue;
    EXPECT_LE(family.limits.wrong, 200) << family.name;
    sum += family.limits.wrong;
    ++families;
  }
  EXPECT_LE(sum / families, 50);
  EXPECT_GE(kExchanges * kxmodel::ScheduleFamilies().size(), 1000000);
}

}  // namespace
