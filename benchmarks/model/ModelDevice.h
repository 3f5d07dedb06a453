#pragma once

#include <KXWAN/modem/PacePrivate.h>
#include <benchmarks/model/ModelRandom.h>

#include <array>
#include <string_view>
#include <vector>

namespace kxmodel {

using kxwan::Seconds;

// What becomes of a command that comes while another is at work.
enum class Busy { kQueues, kDrops, kAborts, kWorksAhead };

// What the device says to "ATS3?" and its like.
enum class Registers { kPadded, kPlain, kRefused };

// A device in numbers. Shares are of 1.
struct DeviceTraits {
  Range base = {.001, .001};  // what a command takes; drawn once, every order as likely
  double spread = 1;          // a command takes up to so many times the base, drawn for each
  double lateShare = 0;       // of the answers, which take so much more:
  Range late = {1.4, 10};
  Seconds firstTakes = 0;  // the first command, instead
  Range wakesAt = {0, 0};  // nothing is worked on before
  Busy busy = Busy::kQueues;

  double lost = 0;     // share of the answers that never come
  double doubled = 0;  // share of the results that come a second time, within:
  Range doubledAfter = {0, .02};
  bool doubledWhole = true;  // with its text
  bool contradicts = false;  // a doubled result is "ERROR" first and "OK" then
  double cut = 0;            // share of the answers that come in two pieces, so far apart:
  Range cutFor = {.02, .4};
  double stray = 0;          // results that belong to no command, for each command
  double unsolicited = 0;    // lines that nobody asked for, for each command
  double bitsPerSecond = 0;  // how fast bytes come; 0: an answer comes whole

  bool echo = false;
  Registers registers = Registers::kPadded;
  bool refusesNames = false;  // every question but "AT"
};

// The command that the host asks just now, and what the device has to say to it.
struct Question {
  uint32_t exchange = 0;
  std::string_view line;    // without its "\r"
  std::string_view text;    // empty: the result alone
  std::string_view result;  // "OK", "ERROR" or "+CME ERROR: 10"
  bool ignored = false;     // never answered
  Seconds takes = -1;       // what the first command takes, instead of what the device draws
  bool lost = false;        // the first answer
};

// Whose answer some bytes are.
struct Truth {
  uint32_t exchange = 0;  // 0: of no exchange's command
  Seconds took = 0;       // what the device needed for it
};

// Bytes that arrive together.
struct Piece {
  std::string_view bytes;  // good until the next piece is taken
  Seconds at = 0;
  bool result = false;  // a final result ends here
  Truth truth;
};

// A device in virtual time that knows for each of its answers which command it belongs to.
class ModelDevice {
 public:
  ModelDevice(const DeviceTraits& traits, Random& random);

  void Ask(const Question& question);

  // It says this by itself.
  void Say(std::string_view bytes, Seconds at);

  // Bytes at its own speed, and at another.
  void Hear(std::string_view bytes, Seconds now);
  void Spoil();

  // When the next bytes come; far away when none are on their way.
  Seconds NextPiece() const;
  Piece TakePiece();

  // Nothing is at work and nothing is on its way.
  bool Idle(Seconds now) const;

  // An answer to a command that was asked, and not to some question besides, is on its way.
  bool OwesAnswer() const;

  // The question asked last has met a late answer.
  bool WasLate() const { return wasLate_; }

 private:
  struct Message {
    Seconds at = 0;
    bool result = false;
    uint32_t command = 0;  // which command's answer, in order; 0: of none
    Truth truth;
    Seconds pause = 0;  // between the two pieces of one that is cut
    uint8_t cutAt = 0;
    uint8_t size = 0;
    std::array<char, 118> bytes;

    void Append(std::string_view more);
    std::string_view View() const { return {bytes.data(), size}; }
  };

  void TakeLine(std::string_view line, Seconds now);
  bool Accept(Seconds now, Seconds takes, Seconds& done);
  Seconds DrawService(bool firstTry);
  void Answer(std::string_view line, bool lost, Message& message);
  std::string_view AnswerQuestion(std::string_view line, Message& message) const;
  bool AppendRegisters(std::string_view line, Message& message) const;
  void SendResult(std::string_view result, Message& message);
  void SendAgain(const Message& answer, std::string_view result);
  void SendUnasked(Seconds now);
  void Queue(const Message& message);
  void ForgetCommand(uint32_t command);

  const DeviceTraits traits_;
  Random& random_;
  const Seconds base_;
  const Seconds wakesAt_;
  Question asked_;
  bool echo_;
  bool spoilt_ = false;
  bool wasLate_ = false;
  uint32_t askedTimes_ = 0;
  uint32_t commands_ = 0;
  Seconds busyUntil_ = 0;

  std::vector<Message> queued_;  // latest first
  Message sending_;
  size_t sent_ = 0;
  Seconds nextAt_ = 0;  // of the rest of what is being sent
  Seconds freeAt_ = 0;  // when the last bytes were out
};

}  // namespace kxmodel
