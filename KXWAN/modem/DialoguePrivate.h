#pragma once

#include <KXWAN/modem/DialogueStatePrivate.h>
#include <KXWAN/modem/ReplyPrivate.h>

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace kxwan {

// What the driver of a dialogue is to do.
enum class Turn {
  kSend,       // write the command, then tell with Written or NotWritten
  kListen,     // tell what comes with Heard; come back at the latest at Step::until
  kAnswered,   // the exchange is over and has a result
  kUnanswered  // the exchange is over and has none
};

struct Step {
  Turn turn;
  Seconds until = 0;
};

// The account of what is outstanding on one line, and the only rule for taking a result. It is told
// what happens and when, and tells what to do. It has no descriptor, no clock and no log.
//
// The rule. Every command that was written is owed one result, and results are owed in order. A
// result is a command's own when it is its turn: a strict count, which cannot be wrong when answers
// are lost, as that makes results fewer and never more. What the count cannot know is whether an
// outstanding answer will still come. It is forgotten only behind a chain of results that all came
// after the same delay, or behind one that fits this device and a quiet line; and then it is put
// aside and not thrown away.
class Dialogue {
 public:
  // The lines that end a reply stay the caller's.
  explicit Dialogue(std::span<const FinalLine> finalLines) : reply_(finalLines) {}

  // Begins an exchange: a command and up to so many tries of so long each. Waiting for the line to
  // run dry first comes out of the same time.
  void Begin(std::string_view command, Seconds now, Seconds timeout, int tries);

  // Begins to wait for the next result that comes, whatever it belongs to, one that was heard
  // already included. dropsText: what an earlier wait has left is no text of the next result, but
  // what came behind a result of such a wait is.
  void BeginListening(Seconds now, Seconds timeout, bool dropsText);

  // Gives the next result that was heard, whatever it belongs to. False when there is none yet.
  // Results that are heard behind it wait for the next call.
  bool TakeHeard(Seconds now, Answer& answer);

  // What is to be done now. Time counts as over only here: tell first what has come by then.
  Step Next(Seconds now);

  // A command was written: the exchange's own where Next asked for it, else one by itself.
  void Written(std::string_view command, Seconds now);
  void NotWritten();

  // A question was written. Its answer, where it is numbers: as NumbersIn gives it; else "". Gives
  // a number to name it by.
  uint32_t QuestionWritten(std::string_view command, std::string_view answer, Seconds now);
  void QuestionAnswered(uint32_t number) { line_.out.DropThrough(number); }

  void Heard(std::string_view bytes, Seconds now);

  // The line has another speed, or was opened anew.
  void LineChanged();

  // Nothing is outstanding, or only questions that were written behind one that was answered.
  void Settled(bool butQuestions);

  const Answer& Result() const { return answer_; }
  Seconds AnsweredAfter() const { return line_.doubles.At() - exchange_.triedAt; }
  bool WasSent() const { return exchange_.tries > 0; }

  // Whether a result is waited for without a command.
  bool Listens() const { return phase_ == Phase::kListening; }

  // What has come for the last try of an exchange that has no result, or for who listens.
  std::string_view Unfinished() { return listens_ || WasSent() ? reply_.Unfinished() : ""; }

  // Whether the begin of an answer has come whose result has not.
  bool HasHalfAnswer() const { return reply_.HasText(); }

  // Lines that came while nobody waited, oldest first, each with its "\n"; of many the last.
  std::string TakeUnasked() { return std::exchange(unasked_, {}); }

  // How many commands may still be answered.
  size_t Outstanding() const { return line_.out.Size() + line_.aside.Size(); }

  // Whether that are only questions whose answers are known.
  bool OwesOnlyQuestions() const { return line_.out.AreAllQuestions(); }

  // Whether what this command asks for may still come for an earlier one.
  bool IsOwed(std::string_view command) const {
    return line_.out.AskForAnyOf(command) || line_.aside.AskForAnyOf(command);
  }

  // How many results, other than to questions, were given to nobody: they came too late, or may
  // have.
  uint32_t Late() const { return line_.late; }

  // Whether the next result might be another command's.
  bool InDoubt() const { return Outstanding() > 0 || line_.unsure; }

  // When something came, and when something came or was written.
  Seconds HeardAt() const { return line_.heardAt; }
  Seconds BusyAt() const { return std::max(line_.heardAt, line_.writtenAt); }

 private:
  enum class Phase { kIdle, kReady, kSending, kTrying, kListening, kAnswered, kUnanswered };

  Seconds TimeToSend() const;
  Seconds TimeToGiveUp() const;
  Seconds TimeTryEnds() const;
  Seconds HeldUntil() const;
  bool OnlyListensOn() const;
  bool MaySendAgainAt(Seconds time) const;
  Step EndTry(Seconds now);
  void BeginFirstTry(Seconds now);

  void TakeResults(Seconds now);
  bool OneAnswerIsDue() const;
  void Place(const FinalResult& final, Seconds service, Seconds now);
  bool IsDouble(const FinalResult& final, Seconds now) const;
  bool IsSuspicious(const FinalResult& final, Seconds now) const;
  bool IsCleanFirst() const;
  void Attribute(const FinalResult& final, Seconds service, Seconds now);
  void Count(const FinalResult& final, Seconds service, Seconds now);
  void CameUnawaited(Seconds service);
  Seconds HoldFor(Seconds delay, Seconds service) const;
  void Hold(const FinalResult& final, Seconds until, bool mayBeDouble);
  void Accept(const FinalResult& final);
  void AcceptHeld();
  void NoteIfRunDry();

  Reply reply_;
  Answer answer_;
  std::string unasked_;
  Phase phase_ = Phase::kIdle;
  bool listens_ = false;   // for results, without a command
  bool takesAny_ = false;  // and whoever waits wants any, not one to a question
  ExchangeState exchange_;
  LineState line_;
};

}  // namespace kxwan
