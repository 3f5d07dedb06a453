#include <benchmarks/model/ScheduleFamilies.h>

#include <algorithm>
#include <iterator>

namespace kxmodel {

namespace {

// What a dialogue learns once about a device harms it once a session.
constexpr uint32_t kLongSession = 5000;

constexpr Family kFamilies[] = {
    // Nothing is lost and nothing is said twice.
    {.name = "late, at once",
     .device = {.lateShare = .12},
     .limits = {.wrong = 35, .none = 139000, .sends = 1.36, .extra = 0.20}},
    {.name = "late, .3 s",
     .device = {.base = {.3, .3}, .lateShare = .12},
     .limits = {.wrong = 40, .none = 173000, .sends = 1.39, .extra = 0.23}},
    {.name = "late, .7 s",
     .device = {.base = {.7, .7}, .lateShare = .12},
     .limits = {.wrong = 60, .none = 234000, .sends = 1.42, .extra = 0.26}},
    {.name = "late, any pace",
     .device = {.base = {.001, 4}, .spread = 1.3, .lateShare = .12},
     .limits = {.wrong = 190, .none = 248000, .sends = 1.39, .extra = 0.24}},
    {.name = "rarely late, any pace",
     .device = {.base = {.001, 4}, .lateShare = .01},
     .limits = {.wrong = 5, .none = 69000, .sends = 1.16, .extra = 0.10}},
    {.name = "late, works ahead",
     .device = {.base = {.001, .7}, .lateShare = .12, .busy = Busy::kWorksAhead},
     .limits = {.wrong = 10, .none = 112000, .sends = 1.35, .extra = 0.18}},
    {.name = "late, cut in two",
     .device = {.base = {.001, .7}, .lateShare = .12, .cut = .1},
     .limits = {.wrong = 60, .none = 154000, .sends = 1.36, .extra = 0.23}},
    {.name = "late, unsolicited lines",
     .device = {.base = {.001, .7}, .lateShare = .12, .unsolicited = .2},
     .limits = {.wrong = 20, .none = 153000, .sends = 1.37, .extra = 0.21}},
    {.name = "late, 9600 bit/s",
     .device = {.base = {.001, .7}, .lateShare = .12, .bitsPerSecond = 9600},
     .limits = {.wrong = 30, .none = 156000, .sends = 1.37, .extra = 0.22}},
    {.name = "late, USB line changed",
     .device = {.lateShare = .12},
     .host = {.lineChanges = .05},
     .limits = {.wrong = 140, .none = 144000, .sends = 1.35, .extra = 0.20}},
    {.name = "late, real line changed",
     .device = {.lateShare = .12},
     .line = {.otherSpeed = OtherSpeed::kVanishes, .deviceFollows = true},
     .host = {.lineChanges = .05},
     .limits = {.wrong = 100, .none = 147000, .sends = 1.34, .extra = 0.20}},
    {.name = "late, rubbish when changed",
     .device = {.base = {.001, .7}, .lateShare = .12},
     .line = {.otherSpeed = OtherSpeed::kRubbish, .deviceFollows = true},
     .host = {.lineChanges = .05},
     .limits = {.wrong = 120, .none = 159000, .sends = 1.35, .extra = 0.21}},
    {.name = "prompt", .device = {.base = {.001, 1.2}, .spread = 1.1}},
    {.name = "prompt, any spread", .device = {.base = {.001, .4}, .spread = 3}},
    {.name = "always 1.4 s", .device = {.base = {1.4, 1.4}}},
    {.name = "always 1.5 to 2.5 s",
     .device = {.base = {1.5, 2.5}},
     .limits = {.none = 69000, .sends = 2.05, .extra = 1.22}},
    {.name = "always 4 s",
     .device = {.base = {4, 4}},
     .limits = {.none = 970000, .sends = 1.38, .extra = 0.14}},
    {.name = "always any time",
     .device = {.base = {.001, 4}, .spread = 1.1},
     .limits = {.wrong = 5, .none = 60000, .sends = 1.18, .extra = 0.14}},
    {.name = "first 10 s, then .3 s",
     .device = {.base = {.3, .3}, .firstTakes = 10},
     .host = {.exchanges = 30},
     .limits = {.none = 70000, .sends = 1.21, .extra = 0.10}},
    {.name = "first 5 s, then .7 s",
     .device = {.base = {.7, .7}, .firstTakes = 5},
     .host = {.exchanges = 30},
     .limits = {.none = 39000, .sends = 1.15, .extra = 0.08}},
    {.name = "wakes late",
     .device = {.base = {.001, 1.1}, .wakesAt = {0, 12}},
     .host = {.exchanges = 30},
     .limits = {.wrong = 120, .none = 31000, .sends = 1.14, .extra = 0.09}},
    {.name = ".5 and 2 s, fixed pauses",
     .device = {.base = {.5, .5}, .lateShare = .5, .late = {1.5, 1.5}},
     .host = {.pauses = Pauses::kFixed},
     .limits = {.wrong = 40, .none = 3000, .sends = 1.61, .extra = 0.25}},
    {.name = "host sleeps 1.7 s",
     .device = {.base = {.001, .7}, .cut = .3},
     .line = {.stall = .05},
     .limits = {.extra = 0.21, .longest = 8}},

    // Answers get lost, and nothing else.
    {.name = "8 % lost, at once",
     .device = {.lost = .08},
     .limits = {.none = 5000, .sends = 1.14, .extra = 0.18}},
    {.name = "8 % lost, to 1.2 s",
     .device = {.base = {.001, 1.2}, .spread = 1.1, .lost = .08},
     .limits = {.none = 35000, .sends = 1.15, .extra = 0.21}},
    {.name = "5 % ignored",
     .host = {.ignored = .05},
     .limits =
         {.none = 58000, .sends = 1.16, .extra = 0.03, .behindOnce = .999, .behindInTime = .999}},
    {.name = "20 % ignored, to .3 s",
     .device = {.base = {.001, .3}},
     .host = {.ignored = .2},
     .limits =
         {.none = 228000, .sends = 1.47, .extra = 0.08, .behindOnce = .999, .behindInTime = .999}},
    {.name = "20 % ignored, to .7 s",
     .device = {.base = {.3, .7}},
     .host = {.ignored = .2},
     .limits =
         {.none = 231000, .sends = 1.48, .extra = 0.17, .behindOnce = .99, .behindInTime = .99}},
    {.name = "lost and ignored",
     .device = {.base = {.001, 1.2}, .spread = 1.3, .lost = .05},
     .host = {.ignored = .05},
     .limits = {.none = 144000, .sends = 1.20, .extra = 0.16}},

    // Both: a device may be slower than it is waited for.
    {.name = "8 % lost, any pace",
     .device = {.base = {.001, 4}, .lost = .08},
     .limits = {.wrong = 50, .none = 147000, .sends = 1.17, .extra = 0.23}},
    {.name = "8 % lost, late",
     .device = {.lateShare = .12, .lost = .08},
     .limits = {.wrong = 100, .none = 362000, .sends = 1.45, .extra = 0.61}},
    {.name = "8 % lost, late, .3 s",
     .device = {.base = {.3, .3}, .lateShare = .12, .lost = .08},
     .limits = {.wrong = 100, .none = 421000, .sends = 1.45, .extra = 0.65}},
    {.name = "drops while busy, late, .3 s",
     .device = {.base = {.3, .3}, .lateShare = .12, .busy = Busy::kDrops},
     .limits = {.wrong = 1500, .none = 341000, .sends = 1.38, .extra = 0.40}},
    {.name = "aborts while busy, late, .3 s",
     .device = {.base = {.3, .3}, .lateShare = .12, .busy = Busy::kAborts},
     .limits = {.wrong = 20, .none = 31000, .sends = 1.34, .extra = 0.49}},

    // Results without a command.
    {.name = "8 % doubled, mixed pauses",
     .device = {.doubled = .08},
     .host = {.pauses = Pauses::kMixed, .exchanges = kLongSession},
     .limits = {.wrong = 300, .extra = 0.03}},
    {.name = "8 % doubled, no pauses, names",
     .device = {.doubled = .08},
     .host = {.names = Names::kOwn, .pauses = Pauses::kNone},
     .limits = {.wrong = 20000, .extra = 0.05}},
    {.name = "8 % result doubled, mixed pauses",
     .device = {.doubled = .08, .doubledWhole = false},
     .host = {.pauses = Pauses::kMixed, .exchanges = kLongSession},
     .limits = {.wrong = 300, .extra = 0.03}},
    {.name = "8 % doubled, .3 s, mixed pauses",
     .device = {.base = {.3, .3}, .doubled = .08},
     .host = {.pauses = Pauses::kMixed},
     .limits = {.extra = 0.03}},
    {.name = "ERROR and OK, 9600 bit/s",
     .device = {.doubled = 1, .doubledAfter = {0, 0}, .contradicts = true, .bitsPerSecond = 9600},
     .host = {.pauses = Pauses::kMixed},
     .limits = {.wrong = 3000, .extra = 0.06}},
    {.name = "1 % stray results, mixed pauses",
     .device = {.base = {.001, .7}, .stray = .01},
     .host = {.pauses = Pauses::kMixed},
     .limits = {.wrong = 3000}},

    // Commands that must not be sent again.
    {.name = "PINs, 3 % late, at once",
     .device = {.lateShare = .03},
     .host = {.sets = .3},
     .limits = {.wrong = 10, .none = 28000, .sends = 1.13, .extra = 0.05}},
    {.name = "PINs, 3 % late, .3 s",
     .device = {.base = {.3, .3}, .lateShare = .03},
     .host = {.sets = .3},
     .limits = {.wrong = 10, .none = 34000, .sends = 1.14, .extra = 0.06}},
    {.name = "PINs, 12 % late",
     .device = {.base = {.001, .7}, .lateShare = .12},
     .host = {.sets = .3},
     .limits = {.wrong = 30, .none = 152000, .sends = 1.36, .extra = 0.21}},
    {.name = "PINs, 8 % lost",
     .device = {.base = {.001, .7}, .lost = .08},
     .host = {.sets = .3},
     .limits = {.none = 5000, .sends = 1.15, .extra = 0.20}},
    {.name = "PINs, 8 % doubled, mixed pauses",
     .device = {.doubled = .08},
     .host = {.pauses = Pauses::kMixed, .sets = .3, .exchanges = kLongSession},
     .limits = {.wrong = 300, .setsWrong = 300, .extra = 0.03}},
};

}  // namespace

std::span<const Family> ScheduleFamilies() { return kFamilies; }

const Family* FindFamily(std::string_view name) {
  const auto* family = std::find_if(std::begin(kFamilies), std::end(kFamilies),
                                    [&](const Family& row) { return row.name == name; });
  return family != std::end(kFamilies) ? family : nullptr;
}

bool AnswersAll(const Family& family) {
  const DeviceTraits& device = family.device;
  return device.lost == 0 && device.doubled == 0 && device.stray == 0 && family.host.ignored == 0 &&
         device.busy != Busy::kDrops && device.busy != Busy::kAborts;
}

}  // namespace kxmodel
