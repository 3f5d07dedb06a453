#pragma once

#include <KXWAN/modem/PacePrivate.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace kxwan {

// A harmless question whose answer is known by what it says: registers that hold the same values
// on every device (V.250 6.2.1 to 6.2.3: S3 is 13, S4 is 10, S5 is 8; a device with others would
// not work), or a name.
struct Question {
  const char* command;
  const char* numbers = "";  // the values, as NumbersIn gives them
  const char* name = "";     // instead of values
  bool single = false;       // one register alone

  bool IsAnsweredBy(std::string_view text) const;
};

// The questions that were asked on one line. None is asked anew while it may still be answered.
class Questions {
 public:
  struct Asked {
    Question question;
    uint32_t number;  // the dialogue's name for it
    Seconds at;
  };

  // The next question to ask that is not owed to a caller; null when all may still be answered.
  // Where registers are refused, one by a name comes first.
  const Question* Next(Seconds now, bool registersRefused,
                       const std::function<bool(const Question&)>& isOwed) const;

  // Whether an answer to this question can be no older one's.
  bool MayAsk(const Question& question, Seconds now) const;

  void Note(const Asked& asked);

  // Takes the question that the text answers, and with it all older ones, whose answers are lost.
  std::optional<Asked> TakeAnsweredBy(std::string_view text);

  size_t Unanswered() const { return asked_.size(); }
  bool AreSingle() const;

 private:
  std::vector<Asked> asked_;  // and not answered, oldest first
};

}  // namespace kxwan
