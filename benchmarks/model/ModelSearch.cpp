#include <benchmarks/model/ModelSearch.h>

#include <KXWAN/handset/SpeedSearchPrivate.h>

#include <algorithm>
#include <string>

namespace kxmodel {

namespace {

constexpr Range kPrompt = {.001, .15};
constexpr Range kSlow = {.2, 1};
constexpr Range kVerySlow = {1.4, 2};

constexpr LineTraits kAnySpeed = {};
constexpr LineTraits kVanishes = {.otherSpeed = OtherSpeed::kVanishes};
constexpr LineTraits kNuls = {.otherSpeed = OtherSpeed::kNuls};
constexpr LineTraits kRubbish = {.otherSpeed = OtherSpeed::kRubbish};
constexpr LineTraits kSpoils = {.otherSpeed = OtherSpeed::kRubbish, .spoils = true};

constexpr SearchFamily kFamilies[] = {
    {.name = "real line, usual speed, prompt",
     .device = {.base = kPrompt, .echo = true},
     .line = kRubbish,
     .usualSpeed = true,
     .median = .4,
     .longest = .7},
    {.name = "real line, prompt",
     .device = {.base = kPrompt, .echo = true},
     .line = kRubbish,
     .median = 1.05,
     .longest = 2.05},
    {.name = "real line, prompt, no echo, plain digits",
     .device = {.base = kPrompt, .registers = Registers::kPlain},
     .line = kVanishes,
     .median = 1.05,
     .longest = 2.05},
    {.name = "real line, prompt, commands are spoilt",
     .device = {.base = kPrompt, .echo = true},
     .line = kSpoils,
     .median = 3.7,
     .longest = 5},
    {.name = "real line, prompt, no echo, commands are spoilt",
     .device = {.base = kPrompt},
     .line = kSpoils,
     .median = 9,
     .longest = 10.2},
    {.name = "real line, prompt, registers refused",
     .device = {.base = kPrompt, .echo = true, .registers = Registers::kRefused},
     .line = kRubbish,
     .median = 1.2,
     .longest = 2.4},
    {.name = "real line, prompt, all refused",
     .device =
         {.base = kPrompt, .echo = true, .registers = Registers::kRefused, .refusesNames = true},
     .line = kRubbish,
     .median = 2.5,
     .longest = 4.4},
    {.name = "real line, .2 to 1 s",
     .device = {.base = kSlow, .spread = 1.1, .echo = true},
     .line = kRubbish,
     .median = 1.7,
     .longest = 3.2},
    {.name = "real line, .2 to 1 s, NULs",
     .device = {.base = kSlow, .echo = true},
     .line = kNuls,
     .median = 1.7,
     .longest = 3.2},
    {.name = "real line, 1.4 to 2 s",
     .device = {.base = kVerySlow},
     .line = kRubbish,
     .median = 15.5,
     .longest = 25},
    {.name = "real line, usual speed, 1.4 to 2 s, nothing seen",
     .device = {.base = kVerySlow},
     .line = kVanishes,
     .usualSpeed = true,
     .median = 8,
     .longest = 11},
    {.name = "real line, 1.4 to 2 s, nothing seen",
     .device = {.base = kVerySlow},
     .line = kVanishes,
     .found = .3,
     .longest = 11},
    {.name = "any speed, prompt",
     .device = {.base = kPrompt, .echo = true},
     .line = kAnySpeed,
     .median = .12,
     .longest = .25},
    {.name = "any speed, .2 to 1 s",
     .device = {.base = kSlow, .spread = 1.1, .echo = true},
     .line = kAnySpeed,
     .median = .6,
     .longest = 1.3},
    {.name = "any speed, 1.4 to 2 s",
     .device = {.base = kVerySlow},
     .line = kAnySpeed,
     .median = 16,
     .longest = 23},
    {.name = "any speed, wakes",
     .device = {.base = {.001, .7}, .wakesAt = {0, 8}},
     .line = kAnySpeed,
     .found = 1,
     .longest = 22},
    {.name = "silence",
     .device = {.wakesAt = {1e6, 1e6}},
     .line = kVanishes,
     .found = 0,
     .median = 10,
     .longest = 10.1},
};

// The port's present one, then those that are searched.
constexpr unsigned long kSpeeds[] = {4800,   115200, 9600,   57600, 19200,
                                     230400, 38400,  460800, 921600};
constexpr size_t kUsualSpeeds = 3;

// What a try of the classic operations lasts, and how many there are.
constexpr Seconds kTimeout = 1.5;
constexpr int kTries = 3;

}  // namespace

std::span<const SearchFamily> SearchFamilies() { return kFamilies; }

void RunSearch(const SearchFamily& family, uint64_t seed, uint32_t run, Timeline* timeline,
               SearchTally& tally) {
  constexpr size_t kFaultsKept = 3;
  Talk talk(family.device, family.line, Random(seed ^ (uint64_t{run} << 20)).Next(), timeline);
  const size_t speeds = family.usualSpeed ? kUsualSpeeds : std::size(kSpeeds);
  const unsigned long own = kSpeeds[talk.Numbers().Below(speeds)];
  talk.Port().SetDeviceSpeed(own);
  talk.Port().SetSpeed(kSpeeds[0]);
  talk.Conversation().SetSpeed(kSpeeds[0]);
  unsigned long speed = 0;
  const bool found = kxwan::SearchSpeed(talk.Conversation(), speed);
  const bool matters = family.line.otherSpeed != OtherSpeed::kSame;
  const bool wrongSpeed = found && matters && speed != own;
  tally.times.push_back(talk.Port().Now());
  talk.Port().Note("search", found ? "found " + std::to_string(speed) : "nothing");
  uint64_t slipped = 0;
  for (uint64_t i = 0; found && i < kQueriesBehindSearch; ++i) {
    talk.Prepare("AT+COPS?", "+COPS: " + std::to_string(i), "OK");
    const Verdict verdict = talk.Exchange(kTimeout, kTries);
    tally.right += verdict.right ? 1 : 0;
    slipped += verdict.answered && !verdict.right ? 1 : 0;
  }
  ++tally.runs;
  tally.found += found ? 1 : 0;
  tally.wrongSpeed += wrongSpeed ? 1 : 0;
  tally.slipped += slipped;
  const bool fault = wrongSpeed || slipped > 0 || (!found && family.found == 1);
  if (fault && tally.faults.size() < kFaultsKept) tally.faults.push_back(run);
}

SearchTally RunSearches(const SearchFamily& family, uint64_t seed, uint32_t runs) {
  SearchTally tally;
  for (uint32_t run = 0; run < runs; ++run) RunSearch(family, seed, run, nullptr, tally);
  return tally;
}

Seconds SearchTally::TimeOf(double share) {
  const auto last = static_cast<double>(times.size() - 1);
  const auto at = times.begin() + static_cast<std::ptrdiff_t>(share * last);
  std::nth_element(times.begin(), at, times.end());
  return *at;
}

}  // namespace kxmodel
