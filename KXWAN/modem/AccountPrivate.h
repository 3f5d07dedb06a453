#pragma once

#include <KXWAN/modem/PacePrivate.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kxwan {

// A command that was written and not answered. Of what it says only the names are kept.
struct Asked {
  uint32_t exchange = 0;
  Seconds at = 0;
  std::string names = {};  // "+CMEE;+CPIN;" of "AT+CMEE=1;+CPIN?"
  bool isQuestion = false;
  std::string answer = {};  // of a question whose answer is known in advance
};

// Commands that are owed a result, oldest first. Of very many the oldest are forgotten: a device
// that left so many unanswered is gone.
class Account {
 public:
  void Add(Asked asked);
  Asked TakeFront();

  // Drops what is older than the command that this text names or answers. A name that comes
  // unsolicited, or that nobody asked for, says nothing.
  void DropOlderThanAnsweredBy(std::string_view text);

  // Drops what is older than an exchange, and that.
  void DropThrough(uint32_t exchange);

  // Whether one of them that is no question of ours asks for what this command asks for.
  bool AskForAnyOf(std::string_view command) const;

  // Drops the oldest ones that are questions with another answer than this text. None at all says
  // nothing: some devices say OK to registers that they do not know.
  void DropQuestionsNotAnsweredBy(std::string_view text);

  // Whether the text names the other command, and none of those here of this exchange.
  bool IsOther(std::string_view text, const Asked& other, uint32_t exchange) const;

  // Puts what was put away in front again.
  void PutInFront(Account& others);

  void Clear() { asked_.clear(); }
  bool Empty() const { return asked_.empty(); }
  size_t Size() const { return asked_.size(); }
  const Asked& Front() const { return asked_.front(); }

  // Whether each of them is a question whose answer is known in advance.
  bool AreAllQuestions() const;

 private:
  static constexpr size_t kMost = 256;

  void DropAllBut(size_t newest);

  std::vector<Asked> asked_;
};

// The name that an answer carries in front of its first value; empty when it has none.
std::string_view NameOfAnswer(std::string_view text);

// The names and registers in a command: "+CMEE;+CPIN;", "S3;S4;".
std::string NamesIn(std::string_view command);

// Whether what was written makes the device answer: it ends a command line, or the data of one, or
// is the escape sequence.
bool EndsLine(std::string_view written);

// Whether the command only asks: one of the form AT+X, AT+X?, AT+X=?, ATI, ATIn, or the probe
// ATE0V1.
bool IsQuery(std::string_view command);

// The numbers that stand alone on lines of a text, without leading zeros, one blank between two:
// "13 10".
std::string NumbersIn(std::string_view text);

}  // namespace kxwan
