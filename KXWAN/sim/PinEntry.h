#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/modem/CSModem.h>

namespace kxwan {

enum class PinOutcome {
  kAccepted,
  kWrong,        // the PIN or PUK was wrong; another try counts
  kPukNeeded,    // the card takes no PIN any more
  kBlocked,      // the card failed or is blocked for good
  kNotPossible,  // the card is missing or busy, or does not ask for this
  kNoAnswer,     // nothing came in time; the entry may have counted
  kNotSent,      // it cannot be a PIN or PUK; nothing was sent
  kInDoubt,      // answers to earlier commands may still come; nothing was sent
  kLineBlocked,  // the line did not take it; nothing whole was sent
  kDeviceGone    // the line hung up; the entry may have counted
};

// Enters the PIN, or the PUK and a new PIN, with one single "AT+CPIN=" (3GPP TS 27.007 8.3) and
// waits up to timeoutMs: a card may take several seconds, and each command may count as a try. When
// answers to earlier commands may still come, harmless questions are asked first (ATS3? and its
// like), for up to timeoutMs, and nothing else is sent when they stay open. An answer that took
// over a second is closed with such a question. When the device refuses, or what came of the entry
// is not known, its state is asked for (ReadSimState). A card that asks for PIN2 takes an entry as
// its PIN2, so call this only on a card whose state is kPin or kPuk.
KXWAN_API PinOutcome EnterPin(CSModem* modem, const char* pin, unsigned long timeoutMs);
KXWAN_API PinOutcome EnterPuk(CSModem* modem, const char* puk, const char* newPin,
                              unsigned long timeoutMs);

// One or two sentences for a user. A static text.
KXWAN_API const char* DescribePinOutcome(PinOutcome outcome);

// Whether the text can be a PIN (4 to 8 digits) or a PUK (8 digits). null is neither.
KXWAN_API bool IsPin(const char* text);
KXWAN_API bool IsPuk(const char* text);

}  // namespace kxwan
