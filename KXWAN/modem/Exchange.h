#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/modem/CSModem.h>

#include <cstdint>

namespace kxwan {

// Sends the command exactly once and waits up to timeoutMs. For what must not be tried again
// because the device was slow: a PIN, a dial. While answers to earlier commands may still come,
// harmless questions are asked first, for up to three seconds: registers whose values are the same
// on every device (ATS3?, ATS4?, ATS5?; V.250 6.2), or AT+GCAP, AT+CMEE?, AT+CSQ. True for a final
// result, as CSModem::GetResponse gives it. False otherwise, with kResultTimeout and what came,
// kResultInDoubt when those answers stay open, so that nothing was sent, kResultNotSent or
// kResultDeviceGone.
KXWAN_API bool SendOnce(CSModem* modem, const char* command, unsigned long timeoutMs, int& result,
                        CString& response);

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
