#pragma once

#include <KXWAN/foundation/CString.h>
#include <KXWAN/foundation/Export.h>

namespace kxwan {

// What the SIM operations give.
enum SimCode : long {
  kSimReady = 0,            // no password needed, or the state could not be told
  kSimNotExchanged = 1000,  // the command got no answer, or an unexpected one
  kSimPukRequired = 1004,   // the card is blocked
  kSimWrongPassword = 1005,
  kSimPukRejected = 1006,
  kSimPinNotSaved = 1007,  // the PIN was accepted, but the PIN request could not be switched off
  kSimOtherError = 1008,   // another mobile equipment error
  kSimMissing = 1013,      // not inserted, or failed
  kSimPinRequired = 1014,
  kSimNoAnswer = 1015  // the state query was not answered
};

// One sentence for a user. A static text.
KXWAN_API const char* DescribeSimCode(long code);

}  // namespace kxwan

// Turns the text of a "+CME ERROR:" report (3GPP TS 27.007 9.2) into one of them: its
// number where the whole text is one, else its phrase. kSimOtherError for anything else.
KXWAN_API long DecodeCMError(const CString& errorText);
