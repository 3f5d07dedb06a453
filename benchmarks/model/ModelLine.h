#pragma once

#include <KXWAN/modem/LinePrivate.h>
#include <benchmarks/model/ModelDevice.h>

#include <string>
#include <utility>
#include <vector>

namespace kxmodel {

// What becomes of bytes at another speed than the device's.
enum class OtherSpeed {
  kSame,      // the line has no speed
  kVanishes,  // nobody sees them
  kNuls,      // they come as NULs
  kRubbish    // they come as something that nobody can read
};

struct LineTraits {
  OtherSpeed otherSpeed = OtherSpeed::kSame;
  bool spoils = false;         // such bytes spoil the device's next command
  bool deviceFollows = false;  // it takes on the speed of the next command
  double stall = 0;            // share of the reads behind which the host's process sleeps, for:
  Seconds stallFor = 1.7;
};

// What happened on the line, for a person: each line has its time.
class Timeline {
 public:
  void Add(Seconds at, std::string_view who, std::string_view what);
  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

// What the line has seen since an exchange began.
struct Seen {
  uint32_t sends = 0;      // of the command asked
  uint32_t others = 0;     // commands besides
  uint32_t results = 0;    // final results that were read, whoever's, since the first send
  uint32_t sentAgain = 0;  // sends in spite of a result
  bool own = false;        // the command's own answer was read
  Seconds ownTook = 0;     // what the device needed for it
  Seconds sentAt = 0;      // first
  bool owed = false;       // answers to earlier commands were still to come then
};

// The host's end of a line to a model device, and the clock of both.
class ModelLine : public kxwan::Line {
 public:
  ModelLine(const LineTraits& traits, ModelDevice& device, Random& random, Timeline* timeline);

  Seconds Now() override { return now_; }
  bool Write(std::string_view command) override;
  Heard Receive(Seconds until) override;
  bool SetSpeed(unsigned long speed) override;
  bool GetSpeed(unsigned long& speed) override;
  bool TakeChange() override { return std::exchange(changed_, false); }
  void NoteTimeout() override {}

  // The host asks this from now on.
  void Ask(const Question& question);
  const Seen& SeenSince() const { return seen_; }

  void Pause(Seconds time) { now_ += time; }

  // The host's process sleeps so long behind the next bytes that it reads.
  void SleepBehindBytes(Seconds time) { sleep_ = time; }
  void Note(std::string_view who, std::string_view what);

  // The host opens its end anew: what waits there is gone, what the device still has to say is not.
  void Reopen();

  // The device changes its own speed, or takes on the host's.
  void SetDeviceSpeed(unsigned long speed);
  unsigned long DeviceSpeed() const { return deviceSpeed_; }

  // Reads that came back with nothing although no time had passed, one behind another, at most.
  uint32_t MostIdleReads() const { return mostIdleReads_; }

 private:
  bool SpeedFits() const;
  void NoteSend();
  void Collect();
  void CollectOtherSpeed(const Piece& piece);
  Heard HandOver();

  const LineTraits traits_;
  ModelDevice& device_;
  Random& random_;
  Timeline* timeline_;
  Seconds now_ = 0;
  Seconds sleep_ = 0;
  unsigned long speed_ = 115200;
  unsigned long deviceSpeed_ = 115200;
  Question asked_;
  Seen seen_;
  bool changed_ = false;
  std::string waiting_;
  std::string given_;
  std::vector<Truth> results_;  // that wait
  uint32_t idleReads_ = 0;
  uint32_t mostIdleReads_ = 0;
};

}  // namespace kxmodel
