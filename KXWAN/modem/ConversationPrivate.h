#pragma once

#include <KXWAN/modem/DialoguePrivate.h>
#include <KXWAN/modem/LinePrivate.h>
#include <KXWAN/modem/QuestionsPrivate.h>

#include <string_view>

namespace kxwan {

// Holds a dialogue over a line, and blocks while it does. The line stays the caller's.
class Conversation {
 public:
  explicit Conversation(Line& line) : line_(line), dialogue_(ClassicFinalLines()) {}

  // Sends a command up to so many times and waits for its result, so long each time. True with a
  // result. It only listens: nothing but the command is sent. On a line whose device has left it
  // waits all the same.
  bool Exchange(std::string_view command, Seconds timeout, int tries);

  // The same, but false at once with kResultDeviceGone when the device has left.
  bool ExchangeWhileThere(std::string_view command, Seconds timeout, int tries);

  // The two halves by themselves: writes a command; waits for the next result that comes, whatever
  // waited included.
  bool Send(std::string_view command);
  bool Listen(Seconds timeout);

  // Sends a command once. A line that is in doubt is settled first, within so long. False with the
  // code of Result(): kResultInDoubt when the line could not be settled and nothing was sent,
  // kResultNotSent when the line did not take it, kResultTimeout when no answer came,
  // kResultDeviceGone when the device has left.
  bool ExchangeOnce(std::string_view command, Seconds timeout, Seconds settlement = 3);

  // The same for what must not be mistaken, such as a PIN: the line is settled within the same time
  // again, and an answer that took over a second is closed with a question. Where results disagree,
  // or the question is not answered, what came of the command is unknown: kResultTimeout. All of it
  // takes three times the timeout at most.
  bool ExchangeSurely(std::string_view command, Seconds timeout);

  // Writes a question whose answer can be no other's, behind these characters. False when it could
  // not be written.
  bool Ask(const Question& question, const char* before = "");

  // The next question to ask; null when all may still be answered, ours or a caller's.
  const Question* NextQuestion(bool registersRefused);

  // The question that the last result answers. What is older is answered too, or lost.
  std::optional<Questions::Asked> TakeAnsweredQuestion();

  // Waits for the next result, with all of its text. False when none came, and when there is no
  // time to wait.
  bool AwaitResult(Seconds timeout);

  // Gives the next result of what was heard, without waiting. The results of what is heard behind
  // it wait for the next call.
  bool TakeResult();

  // Hears what waits, or waits until then for something to come, and gives it as it came.
  std::string_view HearUntil(Seconds until);

  // Takes all results that wait: they answer nothing that is asked from now on.
  void TakeWhatWaits();

  // Hears out what a device sends in one go.
  void HearUntilQuiet();

  // Sets the line's speed, in bits per second. False when the system does not know it.
  bool SetSpeed(unsigned long speed);

  const Answer& Result() const { return answer_; }

  // What came for an exchange without a result.
  std::string_view Unfinished() { return dialogue_.Unfinished(); }

  bool IsGone() const { return gone_; }
  bool RefusesRegisters() const { return refusesRegisters_; }
  void NoteRefusal(bool ofRegisters) { refusesRegisters_ = ofRegisters; }

  Dialogue& Exchanges() { return dialogue_; }
  const Questions& Asked() const { return questions_; }
  Line& Port() { return line_; }

 private:
  bool Run(std::string_view command, bool staysWhenGone);
  bool Closes(const Answer& first, Seconds wait, Seconds end);
  bool Fail(int code);
  void NoteChange();

  Line& line_;
  Dialogue dialogue_;
  Questions questions_;
  Answer answer_;
  Seconds now_ = 0;                // the line was looked at
  bool gone_ = false;              // the device had left then
  bool refusesRegisters_ = false;  // as far as is known
};

}  // namespace kxwan
