#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/modem/CSModem.h>
#include <KXWAN/sim/KXDevicePassword.h>

// These give a code of SimCodes.h and set no last error. Like every command, a PIN goes into the
// debug log. They send up to three times while no answer comes, and each may count as a try:
// kxwan::EnterPin and kxwan::EnterPuk (PinEntry.h) send once.

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
