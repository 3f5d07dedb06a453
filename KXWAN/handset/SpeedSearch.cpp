#include <KXWAN/handset/SpeedSearchPrivate.h>

#include <KXWAN/modem/AccountPrivate.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

namespace kxwan {
namespace {

// The commonest first: data cards, then phones on a cable.
constexpr unsigned long kSpeeds[] = {115200, 9600, 57600, 19200, 230400, 38400, 460800, 921600};

// Echo off, results in words, and four registers with known values: S3 is 13, S4 is 10, S5 is 8.
struct Tag {
  char command[20] = "ATE0V1S?S?S?S?\r";
  char numbers[12] = "";
};

constexpr size_t kRegistersInTag = 4;
constexpr size_t kTagLength = 18;  // without its "\r"
constexpr size_t kTagCount = 81;   // each register is one of three

constexpr Tag MakeTag(size_t index) {
  constexpr const char* kValues[] = {"13", "10", "8"};
  Tag tag;
  size_t command = 6;
  size_t numbers = 0;
  for (size_t i = 0; i < kRegistersInTag; ++i, index /= 3) {
    tag.command[command++] = 'S';
    tag.command[command++] = static_cast<char>('3' + index % 3);
    tag.command[command++] = '?';
    if (i > 0) tag.numbers[numbers++] = ' ';
    for (const char* digit = kValues[index % 3]; *digit != '\0'; ++digit) {
      tag.numbers[numbers++] = *digit;
    }
  }
  tag.command[command] = '\r';
  return tag;
}

constexpr std::array<Tag, kTagCount> MakeTags() {
  std::array<Tag, kTagCount> tags;
  for (size_t i = 0; i < kTagCount; ++i) tags[i] = MakeTag(i);
  return tags;
}

constexpr std::array<Tag, kTagCount> kTags = MakeTags();

// The tag of a speed. They differ from search to search, also between two programs: what a device
// still owes to the one before says nothing.
Question TagOf(size_t index, Seconds begun) {
  constexpr size_t kStep = 29;  // which shares no divisor with their count
  const auto draw = static_cast<uint64_t>(begun * 1e6);
  const Tag& tag = kTags[(draw + kStep * index) % kTagCount];
  return {.command = tag.command, .numbers = tag.numbers};
}

constexpr Seconds kShortListening = .22;
constexpr Seconds kLongListening = 2.1;
constexpr Seconds kListeningNearNoise = 2.3;
constexpr Seconds kListeningBehindEcho = 2.5;
constexpr Seconds kListeningForTag = .1;
constexpr Seconds kLongestSearch = 10;  // of a line from which nothing is heard
constexpr Seconds kLongestOfAll = 30;
constexpr const char* kLineEnd = "\r";
constexpr size_t kUsualSpeeds = 3;  // the present one and the two commonest

// What no device says at its own speed.
bool IsNoise(std::string_view bytes) {
  return std::any_of(bytes.begin(), bytes.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x7F || (byte < ' ' && c != '\r' && c != '\n' && c != '\t');
  });
}

class SpeedSearch {
 public:
  explicit SpeedSearch(Conversation& conversation) : conversation_(conversation) {}

  bool Run(unsigned long& speed);

 private:
  struct Probe {
    unsigned long speed;
    Question tag;
    bool mayBeOld = false;  // an answer: an earlier search asked the same
    Seconds firstAt = 0;
    Seconds at = 0;
    int sent = 0;
  };

  enum class Heard { kNothing, kNoise, kDevice };

  void ListSpeeds(unsigned long present);
  bool AskEach();
  bool AskEachAgain();
  bool AskBefore(size_t count, Seconds noiseAt);
  Heard Ask(Probe& probe, Seconds listening, const char* before);
  Heard Listen(Probe& probe, Seconds end, bool& echoed);
  bool Understands(Probe& probe, bool& untagged);
  bool IsAt(const Probe& probe, Seconds took, bool registersRefused);
  bool Found(const Probe& probe);
  Seconds Now() { return conversation_.Port().Now(); }

  Conversation& conversation_;
  std::vector<Probe> probes_;
  Seconds begun_ = 0;
  bool noise_ = false;  // came: there is a device, at another speed
  unsigned long found_ = 0;
};

bool SpeedSearch::Run(unsigned long& speed) {
  begun_ = Now();
  unsigned long present = 0;
  const bool hadSpeed = conversation_.Port().GetSpeed(present);
  ListSpeeds(hadSpeed ? present : kSpeeds[0]);
  conversation_.TakeWhatWaits();
  if (AskEach() || AskEachAgain()) {
    speed = found_;
    return true;
  }
  if (hadSpeed) conversation_.SetSpeed(present);
  return false;
}

void SpeedSearch::ListSpeeds(unsigned long present) {
  probes_.push_back({present, TagOf(0, begun_)});
  for (const unsigned long speed : kSpeeds) {
    if (speed != present) probes_.push_back({speed, TagOf(probes_.size(), begun_)});
  }
}

bool SpeedSearch::AskEach() {
  for (size_t i = 0; i < probes_.size(); ++i) {
    const Heard heard = Ask(probes_[i], kShortListening, "");
    if (heard == Heard::kDevice) return true;
    if (heard == Heard::kNoise && AskBefore(i, Now())) return true;
  }
  return false;
}

// What waits at the device by half ends with a line end of its own.
bool SpeedSearch::AskEachAgain() {
  for (size_t i = 0; i < probes_.size() && (noise_ || Now() - begun_ < kLongestSearch); ++i) {
    const Seconds usual = i < kUsualSpeeds ? kLongListening : kShortListening;
    const Heard heard = Ask(probes_[i], noise_ ? kListeningNearNoise : usual, kLineEnd);
    if (heard == Heard::kDevice) return true;
    if (heard == Heard::kNoise && AskBefore(i, begun_)) return true;
  }
  return false;
}

// Noise is how an answer to a question at another speed sounds: one of those asked before.
bool SpeedSearch::AskBefore(size_t count, Seconds noiseAt) {
  noise_ = true;
  for (size_t i = count; i-- > 0;) {
    const bool again = noiseAt < probes_[i].at;
    const Seconds listening = again ? kListeningNearNoise : 1.5 * (noiseAt - probes_[i].at) + .15;
    if (Ask(probes_[i], listening, "") == Heard::kDevice) return true;
  }
  return false;
}

SpeedSearch::Heard SpeedSearch::Ask(Probe& probe, Seconds listening, const char* before) {
  if (conversation_.IsGone() || Now() > begun_ + kLongestOfAll) return Heard::kNothing;
  if (!conversation_.SetSpeed(probe.speed)) return Heard::kNothing;
  const Seconds now = Now();
  const bool mayBeOld = !conversation_.Asked().MayAsk(probe.tag, now);
  if (!conversation_.Ask(probe.tag, before)) return Heard::kNothing;
  if (probe.sent++ == 0) {
    probe.firstAt = now;
    probe.mayBeOld = mayBeOld;
  }
  probe.at = now;
  bool echoed = false;
  const Heard heard = Listen(probe, now + listening, echoed);
  // The echo proves the speed, but the line was spoilt by what came before.
  const bool again = heard == Heard::kNothing && echoed && *before == '\0';
  return again ? Ask(probe, kLongListening, kLineEnd) : heard;
}

SpeedSearch::Heard SpeedSearch::Listen(Probe& probe, Seconds end, bool& echoed) {
  const std::string_view echo = std::string_view(probe.tag.command).substr(0, kTagLength);
  std::string heard;
  Seconds untaggedAt = 0;
  for (;;) {
    bool untagged = false;
    if (Understands(probe, untagged)) return Heard::kDevice;
    if (untagged && untaggedAt == 0) {
      untaggedAt = Now();
      end = std::min(end, untaggedAt + kListeningForTag);
    }
    if (conversation_.IsGone() || Now() >= end) break;
    const std::string_view bytes = conversation_.HearUntil(end);
    if (IsNoise(bytes) && !noise_) return Heard::kNoise;
    heard.append(bytes);
    echoed = echoed || heard.find(echo) != heard.npos;
    heard.erase(0, heard.size() - std::min(heard.size(), kTagLength));
    if (echoed && untaggedAt == 0) end = std::max(end, probe.at + kListeningBehindEcho);
  }
  const bool found =
      untaggedAt > 0 && IsAt(probe, untaggedAt - probe.firstAt, /*registersRefused=*/true);
  return found ? Heard::kDevice : Heard::kNothing;
}

// Looks at the results that came. A tag names the speed that it was asked at.
bool SpeedSearch::Understands(Probe& probe, bool& untagged) {
  while (conversation_.TakeResult()) {
    const std::string numbers = NumbersIn(conversation_.Result().text);
    const auto named = std::find_if(probes_.begin(), probes_.end(),
                                    [&](const Probe& each) { return numbers == each.tag.numbers; });
    const auto answered = conversation_.TakeAnsweredQuestion();
    if (named == probes_.end()) {
      // One of an earlier search can be read, so that this is the speed.
      if (answered) return IsAt(probe, Now() - answered->at, /*registersRefused=*/false);
      untagged = true;
    } else if (&*named == &probe && probe.sent == 1 && !probe.mayBeOld) {
      conversation_.HearUntilQuiet();
      conversation_.Exchanges().Settled(/*butQuestions=*/false);
      return Found(probe);
    } else {
      return IsAt(*named, Now() - named->firstAt, /*registersRefused=*/false);
    }
  }
  return false;
}

bool SpeedSearch::IsAt(const Probe& probe, Seconds took, bool registersRefused) {
  return conversation_.SetSpeed(probe.speed) &&
         ConfirmSpeed(conversation_, took, registersRefused, begun_ + kLongestOfAll) &&
         Found(probe);
}

bool SpeedSearch::Found(const Probe& probe) {
  found_ = probe.speed;
  return true;
}

}  // namespace

bool SearchSpeed(Conversation& conversation, unsigned long& speed) {
  return SpeedSearch(conversation).Run(speed);
}

}  // namespace kxwan
