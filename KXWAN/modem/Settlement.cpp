#include <KXWAN/modem/SettlementPrivate.h>

#include <algorithm>

namespace kxwan {

namespace {

class Settlement {
 public:
  Settlement(Conversation& conversation, Seconds budget)
      : conversation_(conversation),
        exchanges_(conversation.Exchanges()),
        end_(Now() + budget),
        wasQuiet_(Now() >= exchanges_.BusyAt() + kLongQuiet),
        refused_(conversation.RefusesRegisters()) {}

  bool Run();

 private:
  // What has not come by then does not come, if the device answers others meanwhile.
  static constexpr Seconds kLongQuiet = 15;

  bool IsOver() const { return IsInStep() || AnswersOnlyNow(); }
  bool IsInStep() const;
  bool AnswersOnlyNow() const;
  Seconds QuietBehindQuestion() const;
  bool IsAnsweredBeforeQuiet(const Question& question);
  bool IsAnswerTo(const Question& question);
  Seconds Now() { return conversation_.Port().Now(); }

  Conversation& conversation_;
  Dialogue& exchanges_;
  const Seconds end_;
  const bool wasQuiet_;  // the line, for long
  Seconds quiet_ = 1;    // of the line behind a question that gets no answer
  bool refused_;         // registers
  bool inStep_ = false;  // only answers to the last questions may still come, and are known
  int asked_ = 0;
  int refusals_ = 0;
  int others_ = 0;  // results that are neither
};

bool Settlement::Run() {
  conversation_.TakeWhatWaits();
  while (!conversation_.IsGone() && Now() < end_) {
    const Question* question = conversation_.NextQuestion(refused_);
    if (question == nullptr || !conversation_.Ask(*question)) break;
    ++asked_;
    if (IsAnsweredBeforeQuiet(*question)) {
      conversation_.HearUntilQuiet();
      exchanges_.Settled(/*butQuestions=*/false);
      return true;
    }
    if (IsOver()) break;
  }
  if (!IsOver()) return false;
  exchanges_.Settled(/*butQuestions=*/IsInStep());
  return true;
}

// A command that was sent behind the question may still be answered, and the rest of a half answer
// would be taken for the next command's.
bool Settlement::IsInStep() const {
  return inStep_ && exchanges_.OwesOnlyQuestions() && !exchanges_.HasHalfAnswer();
}

// A device that refuses every question, each once and at once, behind a long silence.
bool Settlement::AnswersOnlyNow() const {
  constexpr int kEnough = 3;
  return wasQuiet_ && asked_ >= kEnough && refusals_ == asked_ && others_ == 0;
}

// A device that has not answered a few is not given ever more to work off.
Seconds Settlement::QuietBehindQuestion() const {
  constexpr size_t kFew = 3;
  constexpr Seconds kPatience = 5;
  return conversation_.Asked().Unanswered() < kFew ? quiet_ : std::max(quiet_, kPatience);
}

bool Settlement::IsAnsweredBeforeQuiet(const Question& question) {
  constexpr Seconds kBehindRefusal = .3;
  Seconds limit = QuietBehindQuestion();
  while (conversation_.AwaitResult(std::min(limit, end_ - Now()))) {
    const bool refused = !conversation_.Result().IsOk();
    if (IsAnswerTo(question)) return true;
    limit = refused ? kBehindRefusal : QuietBehindQuestion();
  }
  return false;
}

bool Settlement::IsAnswerTo(const Question& question) {
  const Answer& answer = conversation_.Result();
  if (!answer.IsOk()) refused_ = true;  // which proves nothing: it may be another's
  (answer.IsOk() ? others_ : refusals_) += 1;
  const auto answered = conversation_.TakeAnsweredQuestion();
  if (!answered) return false;
  if (question.IsAnsweredBy(answer.text)) {
    conversation_.NoteRefusal(/*ofRegisters=*/*question.name != '\0');
    return true;
  }
  quiet_ = std::max(quiet_, 1.5 * (Now() - answered->at) + .1);
  inStep_ = conversation_.Asked().AreSingle();
  return false;
}

}  // namespace

bool Settle(Conversation& conversation, Seconds budget) {
  return Settlement(conversation, budget).Run();
}

}  // namespace kxwan
