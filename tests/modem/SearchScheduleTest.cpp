#include <benchmarks/model/ModelTalk.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using kxmodel::DeviceTraits;
using kxmodel::LineTraits;
using kxmodel::OtherSpeed;
using kxmodel::Range;
using kxmodel::Seconds;
using kxmodel::Talk;
using kxmodel::Verdict;

namespace {

constexpr Seconds kTimeout = 1.5;
constexpr int kTries = 3;
constexpr uint32_t kRuns = 3000;
constexpr int kQueries = 10;

// In the order of the search. The first is the one that the host wants in the end.
constexpr unsigned long kSpeeds[] = {115200, 19200, 38400, 57600, 9600};

// A device at one of the speeds, looked for with a probe at each.
struct Search {
  const char* name;
  DeviceTraits device;
  LineTraits line;
  bool mustBeFound;
  int mustBeRight;     // of the queries behind it; none is ever another's
  uint32_t mostSends;  // at the speed where it is found
  Seconds mostExtra;   // until it is found there, over what the device needs
};

constexpr Range kPrompt = {.001, .3};

constexpr Search Of(const char* name, DeviceTraits device, LineTraits line, bool mustBeFound,
                    int mustBeRight, uint32_t mostSends, Seconds mostExtra) {
  return {name, device, line, mustBeFound, mustBeRight, mostSends, mostExtra};
}

const Search kSearches[] = {
    Of("real line, prompt", {.base = kPrompt}, {.otherSpeed = OtherSpeed::kVanishes}, true, 10, 1,
       1.16),
    Of("real line, prompt, varied", {.base = kPrompt, .spread = 1.3},
       {.otherSpeed = OtherSpeed::kVanishes}, true, 10, 1, 1.16),
    Of("real line, prompt, NULs", {.base = kPrompt}, {.otherSpeed = OtherSpeed::kNuls}, true, 10, 1,
       1.16),
    Of("real line, what is rubbish spoils the next command", {.base = kPrompt},
       {.otherSpeed = OtherSpeed::kRubbish, .spoils = true}, true, 10, 2, 1.16 + kTimeout),
    Of("any speed, prompt", {.base = kPrompt}, {}, true, 10, 1, .01),
    Of("any speed, wakes", {.base = {.001, 1.1}, .wakesAt = {0, 12}}, {}, false, 0, 3, 4.5),
    Of("any speed, wakes, .3 s", {.base = {.3, .3}, .wakesAt = {5.6, 5.6}}, {}, true, 10, 3, 4.5),
    Of("any speed, wakes, works ahead",
       {.base = {.001, 1.1}, .wakesAt = {0, 12}, .busy = kxmodel::Busy::kWorksAhead}, {}, false, 0,
       3, 4.5),
};

struct Outcome {
  bool found = false;
  Seconds extra = 0;
  uint32_t sends = 0;
  int right = 0;
  int wrong = 0;
};

class Searcher {
 public:
  Searcher(const Search& search, uint32_t run, kxmodel::Timeline* timeline)
      : talk_(search.device, search.line, kxmodel::Random(uint64_t{run} << 20).Next(), timeline) {
    talk_.Port().SetDeviceSpeed(kSpeeds[talk_.Numbers().Below(std::size(kSpeeds))]);
  }

  Outcome Run() {
    for (const unsigned long speed : kSpeeds) {
      talk_.Port().SetSpeed(speed);
      if (!Probe()) continue;
      outcome_.found = true;
      if (speed != kSpeeds[0]) Move();
      break;
    }
    for (int i = 0; outcome_.found && i < kQueries; ++i) Ask(i);
    return outcome_;
  }

 private:
  bool Probe() {
    talk_.Prepare("ATE0V1", "", "OK");
    const Verdict verdict = talk_.Exchange(kTimeout, kTries);
    outcome_.sends = talk_.Port().SeenSince().sends;
    outcome_.extra = verdict.took - talk_.Port().SeenSince().ownTook;
    return verdict.answered;
  }

  void Move() {
    const Outcome found = outcome_;
    talk_.Prepare("AT+IPR=115200", "", "OK");
    if (!talk_.Exchange(kTimeout, kTries).answered) return;
    talk_.Port().SetDeviceSpeed(kSpeeds[0]);
    talk_.Port().SetSpeed(kSpeeds[0]);
    Probe();
    outcome_ = found;
  }

  void Ask(int number) {
    talk_.Prepare("AT+CSQ", "+CSQ: " + std::to_string(number), "OK");
    const Verdict verdict = talk_.Exchange(kTimeout, kTries);
    outcome_.right += verdict.right ? 1 : 0;
    outcome_.wrong += verdict.answered && !verdict.right ? 1 : 0;
  }

  Talk talk_;
  Outcome outcome_;
};

TEST(SearchSchedule, FindsTheSpeedAndTheAnswersBehindIt) {
  for (const Search& search : kSearches) {
    SCOPED_TRACE(search.name);
    for (uint32_t run = 0; run < kRuns; ++run) {
      const Outcome outcome = Searcher(search, run, nullptr).Run();
      const bool fine = (outcome.found || !search.mustBeFound) && outcome.wrong == 0 &&
                        outcome.right >= search.mustBeRight && outcome.sends <= search.mostSends &&
                        outcome.extra <= search.mostExtra;
      if (fine) continue;
      kxmodel::Timeline timeline;
      Searcher(search, run, &timeline).Run();
      ADD_FAILURE() << "run " << run << ", sends " << outcome.sends << ", extra " << outcome.extra
                    << ", right " << outcome.right << ", wrong " << outcome.wrong << ":\n"
                    << timeline.Text();
      break;  // one is enough to look into
    }
  }
}

}  // namespace
