#pragma once

#include <benchmarks/model/ModelTalk.h>

#include <string>
#include <vector>

namespace kxmodel {

// What the commands of a session look like.
enum class Names {
  kAny,     // each session draws one of these:
  kOwn,     // answers begin with the command's name
  kShared,  // one command all along
  kPlain    // results without text
};

enum class Pauses {
  kAny,    // each session draws one of these:
  kNone,   // one exchange right behind another
  kFixed,  // the same all along, up to 3 s
  kMixed   // every time another, up to 3 s
};

struct HostTraits {
  Names names = Names::kAny;
  Pauses pauses = Pauses::kAny;
  double sets = 0;         // share of the commands that set something
  double refused = .1;     // share of the commands that the device refuses
  double ignored = 0;      // share of the commands that the device does not answer at all
  double lineChanges = 0;  // share of the exchanges before which the port gets another speed or is
                           // opened anew
  uint32_t exchanges = 200;  // of a session
};

// What may come of it.
struct Limits {
  double wrong = 0;         // in a million exchanges
  double none = 0;          // without an answer, in a million
  double setsWrong = 50;    // in a million commands that set something
  double sends = 1;         // for each exchange
  double extra = .01;       // seconds for each right answer, over what the device needed
  double behindOnce = 0;    // share of the commands behind an ignored one that went out once
  double behindInTime = 0;  // share of those that were right at most a second late
  double longest = 4.51;    // seconds that an exchange takes
};

// Sessions with one kind of device and host.
struct Family {
  const char* name = "";
  DeviceTraits device = {};
  LineTraits line = {};
  HostTraits host = {};
  Limits limits = {};
};

// An exchange that can be had again.
struct Place {
  uint32_t session;
  uint32_t exchange;
};

struct Tally {
  uint64_t exchanges = 0;
  uint64_t right = 0;
  uint64_t none = 0;
  uint64_t wrong = 0;
  uint64_t sends = 0;
  uint64_t sets = 0;
  uint64_t setsWrong = 0;
  uint64_t setsSentAgain = 0;  // in spite of a result
  uint64_t calm = 0;           // the device was done with all and prompt
  uint64_t calmNone = 0;
  uint64_t behindIgnored = 0;
  uint64_t behindOnce = 0;
  uint64_t behindInTime = 0;
  double extra = 0;    // seconds, of all that were right
  double longest = 0;  // seconds that an exchange took at most
  uint32_t mostIdleReads = 0;
  std::vector<Place> faults;  // the first few

  void Add(const Tally& other);
};

// One host with one device, for so many exchanges.
class Session {
 public:
  Session(const Family& family, uint64_t seed, uint32_t number, uint32_t exchanges,
          Timeline* timeline);

  void Run(Tally& tally);

 private:
  void Pause();
  void ChangeLine();
  const Question& PrepareQuestion(uint32_t exchange);
  void Judge(const Verdict& verdict, const Question& question, uint32_t exchange, Tally& tally);
  void JudgeBehind(const Verdict& verdict, const Question& question, Seconds extra, Tally& tally);

  const Family& family_;
  const uint32_t number_;
  const uint32_t exchanges_;
  Talk talk_;
  Random& random_;
  const Names names_;
  const Pauses pauses_;
  const Seconds fixedPause_;
  std::string text_;
  std::string result_;
  bool set_ = false;
  bool wasIgnored_ = false;
  bool calm_ = false;
};

// So many exchanges or a few more, in sessions from the first on.
Tally RunFamily(const Family& family, uint64_t seed, uint64_t exchanges);

}  // namespace kxmodel
