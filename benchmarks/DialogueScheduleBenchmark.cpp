// How often does a dialogue with a late, forgetful or doubling device end right, without an answer
// or with another's answer, and what does that cost? The model device and host in virtual
// time, a hundred million exchanges; the counters are per million, extra is in seconds for each
// right answer. The seed is 2, so that nothing is counted that the tests were made with.
//
//   DialogueScheduleBenchmark --replay FAMILY SEED SESSION [EXCHANGES]
//
// prints what went over the line in one session, settlement or search.

#include <benchmark/benchmark.h>
#include <benchmarks/model/ModelSearch.h>
#include <benchmarks/model/ModelSettlement.h>
#include <benchmarks/model/ScheduleFamilies.h>

#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

namespace {

using kxmodel::Family;
using kxmodel::SearchFamily;
using kxmodel::SettleFamily;

constexpr uint64_t kSeed = 2;
constexpr uint64_t kExchanges = 100000000;  // of all families together
constexpr uint32_t kRuns = 200000;          // settlements and searches of each family

bool aboveLimits = false;

double Of(double part, uint64_t whole) { return whole > 0 ? part / static_cast<double>(whole) : 0; }

double PerMillion(uint64_t part, uint64_t whole) {
  return Of(1e6 * static_cast<double>(part), whole);
}

// Where the first fault was, and whether there are more than the tests allow.
void Label(benchmark::State& state, const std::string& place, bool tooMany) {
  aboveLimits = aboveLimits || tooMany;
  state.SetLabel(tooMany ? "ABOVE ITS LIMIT: " + place : place);
}

void Exchanges(benchmark::State& state, const Family& family) {
  kxmodel::Tally tally;
  for (auto _ : state) {
    const uint64_t each = kExchanges / kxmodel::ScheduleFamilies().size() + 1;
    tally = kxmodel::RunFamily(family, kSeed, each);
  }
  state.counters["exchanges"] = static_cast<double>(tally.exchanges);
  state.counters["right"] = PerMillion(tally.right, tally.exchanges);
  state.counters["none"] = PerMillion(tally.none, tally.exchanges);
  state.counters["wrong"] = PerMillion(tally.wrong, tally.exchanges);
  state.counters["setsWrong"] = PerMillion(tally.setsWrong, tally.sets);
  state.counters["setsAgain"] = static_cast<double>(tally.setsSentAgain);
  state.counters["sends"] = Of(static_cast<double>(tally.sends), tally.exchanges);
  state.counters["extra"] = Of(tally.extra, tally.right);
  const kxmodel::Limits& limits = family.limits;
  std::string place;
  if (!tally.faults.empty()) {
    const kxmodel::Place& first = tally.faults.front();
    place =
        "session " + std::to_string(first.session) + ", exchange " + std::to_string(first.exchange);
  }
  Label(state, place,
        PerMillion(tally.wrong, tally.exchanges) > limits.wrong || tally.setsSentAgain > 0 ||
            PerMillion(tally.setsWrong, tally.sets) > limits.setsWrong);
}

void Settlements(benchmark::State& state, const SettleFamily& family) {
  kxmodel::SettleTally tally;
  for (auto _ : state) tally = kxmodel::RunSettlements(family, kSeed, kRuns);
  state.counters["lines"] = static_cast<double>(tally.lines);
  state.counters["settled"] = PerMillion(tally.settled, tally.lines);
  state.counters["wrong"] = static_cast<double>(tally.wrong);
  state.counters["slipped"] = static_cast<double>(tally.slipped);
  state.counters["sentInDoubt"] = static_cast<double>(tally.sentInDoubt);
  state.counters["median"] = tally.Median();
  Label(state, tally.faults.empty() ? "" : "run " + std::to_string(tally.faults.front()),
        tally.wrong + tally.slipped + tally.sentInDoubt + tally.sentTwice > 0);
}

void Searches(benchmark::State& state, const SearchFamily& family) {
  kxmodel::SearchTally tally;
  for (auto _ : state) tally = kxmodel::RunSearches(family, kSeed, kRuns);
  state.counters["found"] = PerMillion(tally.found, tally.runs);
  state.counters["wrongSpeed"] = static_cast<double>(tally.wrongSpeed);
  state.counters["slipped"] = static_cast<double>(tally.slipped);
  state.counters["median"] = tally.TimeOf(.5);
  state.counters["longest"] = tally.TimeOf(1);
  Label(state, tally.faults.empty() ? "" : "run " + std::to_string(tally.faults.front()),
        tally.wrongSpeed + tally.slipped > 0);
}

int Replay(int argc, char** argv) {
  if (argc < 5) return 2;
  const std::string_view name = argv[2];
  const uint64_t seed = strtoull(argv[3], nullptr, 10);
  const auto number = static_cast<uint32_t>(strtoul(argv[4], nullptr, 10));
  kxmodel::Timeline timeline;
  if (const Family* family = kxmodel::FindFamily(name); family != nullptr) {
    const auto exchanges =
        argc > 5 ? static_cast<uint32_t>(strtoul(argv[5], nullptr, 10)) : family->host.exchanges;
    kxmodel::Tally tally;
    kxmodel::Session(*family, seed, number, exchanges, &timeline).Run(tally);
  }
  for (const SettleFamily& family : kxmodel::SettleFamilies()) {
    kxmodel::SettleTally tally;
    if (family.name == name) kxmodel::RunSettlement(family, seed, number, &timeline, tally);
  }
  for (const SearchFamily& family : kxmodel::SearchFamilies()) {
    kxmodel::SearchTally tally;
    if (family.name == name) kxmodel::RunSearch(family, seed, number, &timeline, tally);
  }
  fputs(timeline.Text().c_str(), stdout);
  return timeline.Text().empty() ? 2 : 0;
}

template <typename Row>
void Register(const std::string& prefix, void (*run)(benchmark::State&, const Row&),
              std::span<const Row> rows) {
  for (const Row& row : rows) {
    benchmark::RegisterBenchmark((prefix + row.name).c_str(), run, row)
        ->Iterations(1)
        ->Unit(benchmark::kSecond);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1 && std::string_view(argv[1]) == "--replay") return Replay(argc, argv);
  Register("", Exchanges, kxmodel::ScheduleFamilies());
  Register("settle: ", Settlements, kxmodel::SettleFamilies());
  Register("search: ", Searches, kxmodel::SearchFamilies());
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return aboveLimits ? 1 : 0;
}
