#pragma once

#include <KXWAN/modem/AccountPrivate.h>
#include <KXWAN/modem/AnswerPrivate.h>
#include <KXWAN/modem/ChainPrivate.h>
#include <KXWAN/modem/DoublesPrivate.h>
#include <KXWAN/modem/PacePrivate.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>

namespace kxwan {

// A result that is taken when nothing contradicts it until then.
struct HeldResult {
  Answer answer;
  Seconds until;
  bool mayBeDouble;  // of the result before, on a line that owes nothing
};

// What a dialogue knows of the present exchange.
struct ExchangeState {
  uint32_t number = 0;
  bool isQuery = false;
  Seconds begun = 0;
  Seconds timeout = 0;  // of a try
  Seconds end = 0;      // of everything
  int mostTries = 0;
  int tries = 0;         // that were sent
  int failedWrites = 0;  // that count as tries too

  int countedBefore = 0;  // results of commands that came for earlier tries

  // When the first try was sent:
  bool doubt = false;  // something was outstanding
  bool calm = false;   // the line had been quiet for long
  Lateness latenessThen;

  // The present try.
  Seconds triedAt = 0;
  bool heard = false;  // a result came, whoever it was given to
  int counted = 0;     // results of commands that came
  std::optional<HeldResult> held;
};

// What a dialogue knows of the line.
struct LineState {
  static constexpr Seconds kNever = -std::numeric_limits<Seconds>::infinity();

  Account out;     // what is owed, oldest first
  Account aside;   // what was owed, and has been forgotten for now
  Asked answered;  // what the last result was given to
  Pace pace;
  Lateness lateness;
  Chain chain;
  Doubles doubles;
  bool unsure = false;  // something was forgotten
  bool moved = false;   // the line changed while something was outstanding
  uint32_t late = 0;    // results that were given to nobody
  Seconds slowest = 0;  // that an answer has taken
  Seconds heardAt = kNever;
  Seconds writtenAt = kNever;
  size_t resultsRead = 0;    // with the last bytes
  size_t dueBeforeRead = 0;  // outstanding when those came
};

}  // namespace kxwan
