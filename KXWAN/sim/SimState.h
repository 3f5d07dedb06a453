#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/modem/CSModem.h>

// These give a code of SimCodes.h and set no last error. They tell only devices apart that report
// the state as an equipment error; kxwan::ReadSimState (SimCard.h) understands ordinary replies
// too.

// Asks with "AT+CMEE=1;+CPIN?" (3GPP TS 27.007 8.3), which leaves numeric error reports switched
// on, and where that cannot be told apart once more with "AT+CPIN?". Stores the longest PIN that
// the card takes when a PIN or PUK is needed, else 0.
KXWAN_API long IsPasswordRequired(CSModem* modem, long* pinLength);

// Sends one state query and gives kSimNoAnswer, the code of the equipment error that answered, or
// kSimReady for any other answer.
KXWAN_API long CheckSIMState(CSModem* modem, const char* command);

// The longest PIN, in digits, from "AT+CPWD=?" (3GPP TS 27.007 7.5): 8 or more, or 0 when the
// device does not tell.
KXWAN_API long GetSIMPINLength(CSModem* modem);
