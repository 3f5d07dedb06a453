#include <KXWAN/modem/QuestionsPrivate.h>

#include <KXWAN/modem/AccountPrivate.h>

#include <algorithm>

namespace kxwan {

namespace {

// In the order asked: each register alone, then all sequences of three, then names. The search for
// the speed asks those of two.
constexpr Question kQuestions[] = {
    {.command = "ATS3?\r", .numbers = "13", .single = true},
    {.command = "ATS4?\r", .numbers = "10", .single = true},
    {.command = "ATS5?\r", .numbers = "8", .single = true},
    {.command = "ATS3?S4?S5?\r", .numbers = "13 10 8"},
    {.command = "ATS5?S4?S3?\r", .numbers = "8 10 13"},
    {.command = "ATS4?S3?S5?\r", .numbers = "10 13 8"},
    {.command = "ATS4?S5?S3?\r", .numbers = "10 8 13"},
    {.command = "ATS5?S3?S4?\r", .numbers = "8 13 10"},
    {.command = "ATS3?S5?S4?\r", .numbers = "13 8 10"},
    {.command = "ATS3?S3?S3?\r", .numbers = "13 13 13"},
    {.command = "ATS3?S3?S4?\r", .numbers = "13 13 10"},
    {.command = "ATS3?S3?S5?\r", .numbers = "13 13 8"},
    {.command = "ATS3?S4?S3?\r", .numbers = "13 10 13"},
    {.command = "ATS3?S4?S4?\r", .numbers = "13 10 10"},
    {.command = "ATS3?S5?S3?\r", .numbers = "13 8 13"},
    {.command = "ATS3?S5?S5?\r", .numbers = "13 8 8"},
    {.command = "ATS4?S3?S3?\r", .numbers = "10 13 13"},
    {.command = "ATS4?S3?S4?\r", .numbers = "10 13 10"},
    {.command = "ATS4?S4?S3?\r", .numbers = "10 10 13"},
    {.command = "ATS4?S4?S4?\r", .numbers = "10 10 10"},
    {.command = "ATS4?S4?S5?\r", .numbers = "10 10 8"},
    {.command = "ATS4?S5?S4?\r", .numbers = "10 8 10"},
    {.command = "ATS4?S5?S5?\r", .numbers = "10 8 8"},
    {.command = "ATS5?S3?S3?\r", .numbers = "8 13 13"},
    {.command = "ATS5?S3?S5?\r", .numbers = "8 13 8"},
    {.command = "ATS5?S4?S4?\r", .numbers = "8 10 10"},
    {.command = "ATS5?S4?S5?\r", .numbers = "8 10 8"},
    {.command = "ATS5?S5?S3?\r", .numbers = "8 8 13"},
    {.command = "ATS5?S5?S4?\r", .numbers = "8 8 10"},
    {.command = "ATS5?S5?S5?\r", .numbers = "8 8 8"},
    {.command = "AT+GCAP\r", .name = "+GCAP"},
    {.command = "AT+CMEE?\r", .name = "+CMEE"},
    {.command = "AT+CSQ\r", .name = "+CSQ"},
};

// An answer that comes later than this is not thought of. A device may have much to work off.
constexpr Seconds kLatest = 180;

bool IsSame(const Question& one, const Question& other) {
  return std::string_view(one.numbers) == other.numbers && std::string_view(one.name) == other.name;
}

}  // namespace

bool Question::IsAnsweredBy(std::string_view text) const {
  return *name != '\0' ? NameOfAnswer(text) == name : NumbersIn(text) == numbers;
}

const Question* Questions::Next(Seconds now, bool registersRefused,
                                const std::function<bool(const Question&)>& isOwed) const {
  const Question* byRegister = nullptr;
  const Question* byName = nullptr;
  for (const Question& question : kQuestions) {
    const Question*& first = *question.name != '\0' ? byName : byRegister;
    if (first == nullptr && MayAsk(question, now) && !isOwed(question)) first = &question;
  }
  return registersRefused && byName != nullptr ? byName : byRegister;
}

bool Questions::MayAsk(const Question& question, Seconds now) const {
  return std::none_of(asked_.begin(), asked_.end(), [&](const Asked& asked) {
    return now - asked.at < kLatest && IsSame(asked.question, question);
  });
}

// Also a question that may be asked anew is kept: its answer, should it come after all, is not the
// new one's.
void Questions::Note(const Asked& asked) {
  constexpr size_t kMost = 256;
  if (asked_.size() == kMost) asked_.erase(asked_.begin());
  asked_.push_back(asked);
}

std::optional<Questions::Asked> Questions::TakeAnsweredBy(std::string_view text) {
  const auto found = std::find_if(asked_.begin(), asked_.end(), [&](const Asked& asked) {
    return asked.question.IsAnsweredBy(text);
  });
  if (found == asked_.end()) return std::nullopt;
  const Asked answered = *found;
  asked_.erase(asked_.begin(), found + 1);
  return answered;
}

bool Questions::AreSingle() const {
  return std::all_of(asked_.begin(), asked_.end(),
                     [](const Asked& asked) { return asked.question.single; });
}

}  // namespace kxwan
