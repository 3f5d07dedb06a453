#include <KXWAN/handset/SpeedSearchPrivate.h>

#include <algorithm>

namespace kxwan {
namespace {

// How often the device refused what it was asked.
struct Refusals {
  bool registers;
  int names = 0;
};

// Whether the device answers the question, which says that everything older is done.
bool Answers(Conversation& conversation, const Question& question, Seconds wait, Seconds end,
             Refusals& refusals) {
  if (!conversation.Ask(question)) return false;
  const bool byName = *question.name != '\0';
  while (conversation.AwaitResult(std::min(wait, end - conversation.Port().Now()))) {
    const Answer& answer = conversation.Result();
    if (question.IsAnsweredBy(answer.text)) {
      conversation.TakeAnsweredQuestion();
      conversation.NoteRefusal(/*ofRegisters=*/byName);
      conversation.HearUntilQuiet();
      conversation.Exchanges().Settled(/*butQuestions=*/false);
      return true;
    }
    conversation.TakeAnsweredQuestion();
    // Some devices say OK to whatever they do not know.
    if (answer.IsOk() && !answer.text.empty()) continue;
    refusals.registers = true;
    refusals.names += byName ? 1 : 0;
  }
  return false;
}

// Exactly one answer, and soon.
bool AnswersPlainly(Conversation& conversation) {
  constexpr Seconds kSoon = .22;
  constexpr Seconds kCalm = .25;
  return conversation.Send("AT\r") && conversation.AwaitResult(kSoon) &&
         !conversation.AwaitResult(kCalm);
}

// A device that answers nothing but plain commands. Where it is slow, the line stays in doubt.
bool AnswersAtAll(Conversation& conversation, Seconds end) {
  constexpr Seconds kQuiet = 2.5;
  bool plainly = AnswersPlainly(conversation);
  plainly = plainly && AnswersPlainly(conversation);
  if (plainly) {
    conversation.Exchanges().Settled(/*butQuestions=*/false);
    return true;
  }
  const auto left = [&] { return std::min(kQuiet, end - conversation.Port().Now()); };
  while (conversation.AwaitResult(left())) {
  }
  return conversation.Send("AT\r") && conversation.AwaitResult(left());
}

}  // namespace

bool ConfirmSpeed(Conversation& conversation, Seconds lastAnswerTook, bool registersRefused,
                  Seconds end) {
  constexpr int kMostQuestions = 4;
  constexpr int kRefusedNames = 2;
  constexpr Seconds kLongest = 3.5;
  const Seconds wait = std::min(kLongest, 1.5 * lastAnswerTook + .3);
  Refusals refusals = {registersRefused};
  conversation.TakeWhatWaits();
  for (int i = 0; i < kMostQuestions && !conversation.IsGone(); ++i) {
    if (refusals.names >= kRefusedNames) return AnswersAtAll(conversation, end);
    const Question* question = conversation.NextQuestion(refusals.registers);
    if (question == nullptr) return false;
    if (Answers(conversation, *question, wait, end, refusals)) return true;
  }
  return false;
}

}  // namespace kxwan
