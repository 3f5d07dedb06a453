#include <KXWAN/modem/ConversationPrivate.h>

#include <KXWAN/modem/SettlementPrivate.h>

#include <algorithm>
#include <string>

namespace kxwan {

bool Conversation::Exchange(std::string_view command, Seconds timeout, int tries) {
  NoteChange();
  now_ = line_.Now();
  dialogue_.Begin(command, now_, timeout, tries);
  HearUntil(now_);  // what waits is nothing of the answer
  return Run(command, /*staysWhenGone=*/true);
}

bool Conversation::ExchangeWhileThere(std::string_view command, Seconds timeout, int tries) {
  NoteChange();
  now_ = line_.Now();
  dialogue_.Begin(command, now_, timeout, tries);
  HearUntil(now_);
  return gone_ ? Fail(kResultDeviceGone) : Run(command, /*staysWhenGone=*/false);
}

bool Conversation::Send(std::string_view command) {
  NoteChange();
  if (!line_.Write(command)) return false;
  dialogue_.Written(command, line_.Now());
  return true;
}

bool Conversation::Listen(Seconds timeout) {
  NoteChange();
  now_ = line_.Now();
  dialogue_.BeginListening(now_, timeout, /*dropsText=*/true);
  if (dialogue_.Listens()) HearUntil(now_);
  if (Run({}, /*staysWhenGone=*/true)) return true;
  line_.NoteTimeout();
  return false;
}

bool Conversation::ExchangeOnce(std::string_view command, Seconds timeout, Seconds settlement) {
  NoteChange();
  HearUntil(line_.Now());
  const bool settled = !gone_ && (!dialogue_.InDoubt() || Settle(*this, settlement));
  if (gone_) return Fail(kResultDeviceGone);
  if (!settled) return Fail(kResultInDoubt);
  if (ExchangeWhileThere(command, timeout, /*tries=*/1)) return true;
  return !gone_ && !dialogue_.WasSent() ? Fail(kResultNotSent) : false;
}

bool Conversation::ExchangeSurely(std::string_view command, Seconds timeout) {
  constexpr Seconds kPrompt = 1;
  const Seconds end = line_.Now() + 3 * timeout;
  HearUntilQuiet();  // the result before may come twice
  if (!ExchangeOnce(command, timeout, /*settlement=*/timeout)) return false;
  const Seconds took = dialogue_.AnsweredAfter();
  if (took <= kPrompt) return true;
  const Answer first = answer_;
  if (!Closes(first, 1.5 * took, end)) return Fail(gone_ ? kResultDeviceGone : kResultTimeout);
  answer_ = first;
  return true;
}

// Whether a fresh question is answered, and all that comes in front of its answer says the same.
bool Conversation::Closes(const Answer& first, Seconds wait, Seconds end) {
  const Question* question = NextQuestion(refusesRegisters_);
  if (question == nullptr || !Ask(*question)) return false;
  end = std::min(end, line_.Now() + 2 * wait);
  while (AwaitResult(std::min(wait, end - line_.Now()))) {
    if (question->IsAnsweredBy(answer_.text)) {
      TakeAnsweredQuestion();
      HearUntilQuiet();
      dialogue_.Settled(/*butQuestions=*/false);
      return true;
    }
    if (answer_.result != first.result || answer_.text != first.text) return false;
  }
  return false;
}

bool Conversation::Ask(const Question& question, const char* before) {
  if (!line_.Write(std::string(before) + question.command)) return false;
  now_ = line_.Now();
  questions_.Note(
      {question, dialogue_.QuestionWritten(question.command, question.numbers, now_), now_});
  return true;
}

const Question* Conversation::NextQuestion(bool registersRefused) {
  return questions_.Next(line_.Now(), registersRefused, [this](const Question& question) {
    return dialogue_.IsOwed(question.command);
  });
}

std::optional<Questions::Asked> Conversation::TakeAnsweredQuestion() {
  const auto answered = questions_.TakeAnsweredBy(answer_.text);
  if (answered) dialogue_.QuestionAnswered(answered->number);
  return answered;
}

bool Conversation::AwaitResult(Seconds timeout) {
  if (timeout <= 0) return false;  // a line that floods always has one more
  now_ = line_.Now();
  dialogue_.BeginListening(now_, timeout, /*dropsText=*/false);
  if (dialogue_.Listens()) HearUntil(now_);
  return Run({}, /*staysWhenGone=*/false);
}

bool Conversation::TakeResult() { return dialogue_.TakeHeard(now_, answer_); }

void Conversation::TakeWhatWaits() {
  HearUntil(line_.Now());
  while (TakeResult()) TakeAnsweredQuestion();
}

void Conversation::HearUntilQuiet() {
  constexpr Seconds kQuiet = .05;
  constexpr Seconds kLongest = .5;
  const Seconds end = line_.Now() + kLongest;
  do {
    HearUntil(line_.Now() + kQuiet);
  } while (!gone_ && now_ < end && dialogue_.HeardAt() > now_ - kQuiet);
}

bool Conversation::Fail(int code) {
  answer_ = {};
  answer_.result = code;
  return false;
}

// Does what the dialogue says until it is over.
bool Conversation::Run(std::string_view command, bool staysWhenGone) {
  bool waits = false;  // for the result of what was written
  for (;;) {
    const Step step = dialogue_.Next(now_);
    if (waits && (step.turn == Turn::kSend || step.turn == Turn::kUnanswered)) line_.NoteTimeout();
    switch (step.turn) {
      case Turn::kSend:
        waits = line_.Write(command);
        if (waits) dialogue_.Written(command, line_.Now());
        if (!waits) dialogue_.NotWritten();
        if (!waits) HearUntil(line_.Now());
        break;
      case Turn::kListen:
        HearUntil(step.until);
        break;
      default:
        answer_ = dialogue_.Result();
        return step.turn == Turn::kAnswered;
    }
    if (gone_ && !staysWhenGone) return Fail(kResultDeviceGone);
  }
}

std::string_view Conversation::HearUntil(Seconds until) {
  const Line::Heard heard = line_.Receive(until);
  dialogue_.Heard(heard.bytes, heard.at);
  now_ = heard.at;
  gone_ = heard.gone;
  return heard.bytes;
}

bool Conversation::SetSpeed(unsigned long speed) {
  const bool set = line_.SetSpeed(speed);
  NoteChange();
  return set;
}

void Conversation::NoteChange() {
  if (line_.TakeChange()) dialogue_.LineChanged();
}

}  // namespace kxwan
