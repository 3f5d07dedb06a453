#include <benchmarks/model/ModelSettlement.h>

#include <algorithm>

namespace kxmodel {

namespace {

constexpr Range kPrompt = {.001, .3};

constexpr SettleFamily kFamilies[] = {
    {.name = "prompt again after 10 s",
     .device = {.base = kPrompt, .firstTakes = 10},
     .waits = {2, 8},
     .settled = .88,
     .median = .5},
    {.name = "prompt again, plain digits",
     .device = {.base = kPrompt, .firstTakes = 7, .registers = Registers::kPlain},
     .waits = {0, 3},
     .settled = .98,
     .median = 1.4},
    {.name = "8 % lost", .device = {.base = kPrompt, .lost = .08}, .settled = .999, .median = .11},
    {.name = "12 % late",
     .device = {.base = kPrompt, .lateShare = .12},
     .waits = {0, 3},
     .settled = .62,
     .median = .2},
    {.name = "12 % late, works ahead",
     .device = {.base = kPrompt, .lateShare = .12, .busy = Busy::kWorksAhead},
     .waits = {0, 3},
     .settled = .62,
     .median = 1},
    {.name = "12 % late, cut, unsolicited lines",
     .device = {.base = kPrompt, .lateShare = .12, .cut = .1, .unsolicited = .2},
     .settled = .45,
     .median = 1},
    {.name = "8 % lost, 12 % late",
     .device = {.base = kPrompt, .lateShare = .12, .lost = .08},
     .waits = {0, 3},
     .settled = .7,
     .median = .2},
    {.name = "always 1.4 to 2.5 s", .device = {.base = {1.4, 2.5}}, .waits = {0, 3}, .settled = .6},
    {.name = "always any time",
     .device = {.base = {.001, 4}, .spread = 1.3},
     .waits = {0, 3},
     .settled = .35},
    {.name = "registers refused",
     .device = {.base = kPrompt, .lateShare = .12, .registers = Registers::kRefused},
     .waits = {0, 3},
     .settled = .55,
     .median = .5},
    {.name = "all refused",
     .device = {.base = kPrompt,
                .lateShare = .12,
                .registers = Registers::kRefused,
                .refusesNames = true}},
    {.name = "all refused, and quiet for 16 s",
     .device = {.base = kPrompt,
                .lateShare = .12,
                .registers = Registers::kRefused,
                .refusesNames = true},
     .waits = {16, 16},
     .settled = .95},
    {.name = "prompt again after 10 s, 12 s",
     .device = {.base = kPrompt, .firstTakes = 10},
     .budget = 12,
     .settled = 1,
     .median = 6},
    {.name = "12 % late, 12 s",
     .device = {.base = kPrompt, .lateShare = .12},
     .budget = 12,
     .settled = .88,
     .median = 3.5},
    {.name = "always 1.4 to 2.5 s, 12 s",
     .device = {.base = {1.4, 2.5}},
     .budget = 12,
     .settled = .99,
     .median = 8.5},
    {.name = "12 % late, surely",
     .device = {.base = kPrompt, .lateShare = .12, .cut = .1, .unsolicited = .2},
     .surely = true,
     .settled = .97,
     .median = 4.2},
    {.name = "always any time, surely",
     .device = {.base = {.001, 4}, .spread = 1.3},
     .surely = true,
     .settled = .95,
     .median = 12},
    {.name = "registers refused, surely",
     .device = {.base = kPrompt, .lateShare = .12, .registers = Registers::kRefused},
     .surely = true,
     .settled = .94,
     .median = 5},
};

constexpr Seconds kTimeout = 1.5;
constexpr Seconds kTimeoutOnce = 20;
constexpr int kTries = 3;
constexpr int kQueriesBehind = 4;

struct Query {
  const char* line;
  const char* text;
};

constexpr Query kQueries[] = {{"AT+COPS?", "+COPS: 0"},
                              {"AT+CBC", "+CBC: 0,50"},
                              {"AT+CGMM", "M600"},
                              {"AT+CGMI", "ACME"},
                              {"AT+CPIN?", "+CPIN: SIM PIN"}};

// What the card says to the PIN.
constexpr const char* kVerdicts[] = {"OK", "ERROR", "+CME ERROR: 16"};

void Prepare(Talk& talk) {
  const Query& query = kQueries[talk.Numbers().Below(std::size(kQueries))];
  talk.Port().Pause(talk.Numbers().Chance(.5) ? talk.Numbers().Within({0, 2}) : 0);
  talk.Prepare(query.line, query.text, "OK");
}

bool IsWrong(const Verdict& verdict) { return verdict.answered && !verdict.right; }

bool ComesInDoubt(Talk& talk) {
  constexpr int kMostExchanges = 30;
  for (int i = 0; i < kMostExchanges; ++i) {
    Prepare(talk);
    talk.Exchange(kTimeout, kTries);
    if (talk.Conversation().Exchanges().InDoubt()) return true;
  }
  return false;
}

uint64_t CountSlips(Talk& talk, Seconds budget) {
  uint64_t slips = 0;
  for (int i = 0; i < kQueriesBehind; ++i) {
    Prepare(talk);
    slips += IsWrong(talk.ExchangeOnce(kTimeoutOnce, budget)) ? 1 : 0;
  }
  return slips;
}

void AskInDoubt(Talk& talk, SettleTally& tally) {
  for (int i = 0; i < kQueriesBehind; ++i) {
    Prepare(talk);
    ++tally.queries;
    tally.queriesWrong += IsWrong(talk.Exchange(kTimeout, kTries)) ? 1 : 0;
  }
}

}  // namespace

std::span<const SettleFamily> SettleFamilies() { return kFamilies; }

void RunSettlement(const SettleFamily& family, uint64_t seed, uint32_t run, Timeline* timeline,
                   SettleTally& tally) {
  constexpr size_t kFaultsKept = 3;
  Talk talk(family.device, {}, Random(seed ^ (uint64_t{run} << 20)).Next(), timeline);
  if (!ComesInDoubt(talk)) return;
  talk.Port().Pause(talk.Numbers().Within(family.waits));
  talk.Prepare("AT+CPIN=\"1234\"", "", kVerdicts[talk.Numbers().Below(std::size(kVerdicts))]);
  const Seconds begun = talk.Port().Now();
  const bool wrong = IsWrong(family.surely ? talk.ExchangeSurely(kTimeoutOnce)
                                           : talk.ExchangeOnce(kTimeoutOnce, family.budget));
  const Seen seen = talk.Port().SeenSince();
  const bool settled = seen.sends > 0;
  const uint64_t slipped = settled ? CountSlips(talk, family.budget) : 0;
  if (!settled) AskInDoubt(talk, tally);
  ++tally.lines;
  tally.settled += settled ? 1 : 0;
  tally.wrong += wrong ? 1 : 0;
  tally.slipped += slipped;
  tally.sentInDoubt += seen.owed ? 1 : 0;
  tally.sentTwice += seen.sends > 1 ? 1 : 0;
  if (settled) tally.times.push_back(seen.sentAt - begun);
  const bool fault = wrong || slipped > 0 || seen.owed || seen.sends > 1;
  if (fault && tally.faults.size() < kFaultsKept) tally.faults.push_back(run);
}

SettleTally RunSettlements(const SettleFamily& family, uint64_t seed, uint32_t runs) {
  SettleTally tally;
  for (uint32_t run = 0; run < runs; ++run) RunSettlement(family, seed, run, nullptr, tally);
  return tally;
}

Seconds SettleTally::Median() {
  if (times.empty()) return 0;
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

}  // namespace kxmodel
