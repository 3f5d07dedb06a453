#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/modem/CSModem.h>

#include <cstdint>

namespace kxwan {

// How a device has kept up so far with what one object sent.
struct AnswerCounts {
  uint32_t unanswered;  // exchanges, and waits for a response, that ended without a result
  uint32_t late;        // results that came too late for their exchange, or may have
};

// The counts only grow: compare them with what they were. An operation that takes silence for an
// answer (a record with "Error" in it, a platform without EDGE) is complete when no exchange was
// left unanswered. Where one was, a later command was answered and nothing came late in between,
// the answer was lost or the device gives none.
KXWAN_API AnswerCounts CountAnswers(const CSModem* modem);

}  // namespace kxwan
