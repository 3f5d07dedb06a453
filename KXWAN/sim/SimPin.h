#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/modem/CSModem.h>

// A PIN or PUK entry as an application fills it in. The texts are NUL-terminated.
struct KXDevicePassword {
  char szPUK[128];       // read only with a PUK
  char szPIN[128];       // the PIN, or the new PIN with a PUK
  signed char bSavePIN;  // nonzero: switch the card's PIN request off afterwards
};

static_assert(sizeof(KXDevicePassword) == 257, "the record's layout is frozen");

// These give a code of SimCodes.h and set no last error.

// Asking for the state. These tell only devices apart that report it as an equipment error;
// kxwan::ReadSimState (SimState.h) understands ordinary replies too.

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

// Entering a PIN. Like every command, it goes into the debug log. These send up to three times
// while no answer comes, and each may count as a try: kxwan::EnterPin and kxwan::EnterPuk
// (PinEntry.h) send once.

// Enters the PIN with "AT+CPIN=" (3GPP TS 27.007 8.3), and with savePIN nonzero calls SaveSIMPIN
// afterwards: kSimReady, or kSimPinNotSaved when that failed. An equipment error gives
// kSimNotExchanged.
KXWAN_API long SetPIN(CSModem* modem, const char* pin, signed char savePIN);

// Enters the PUK and a new PIN with "AT+CPIN=", otherwise like SetPIN.
KXWAN_API long SetPINPUK(CSModem* modem, const char* puk, const char* newPin, signed char savePIN);

// The same with a record: SetPIN ignores szPUK.
KXWAN_API long SetPINOnCard(CSModem* modem, KXDevicePassword* password);
KXWAN_API long SetPINPUKOnCard(CSModem* modem, KXDevicePassword* password);

// Switches the card's PIN request off with "AT+CLCK=" (3GPP TS 27.007 7.4), so that the PIN need
// not be entered again. True when the device accepted it.
KXWAN_API bool SaveSIMPIN(CSModem* modem, const char* pin);
