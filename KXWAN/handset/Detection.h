#pragma once

#include <KXWAN/foundation/CString.h>
#include <KXWAN/foundation/Export.h>
#include <KXWAN/handset/CHandsetPlatform.h>
#include <KXWAN/modem/CSModem.h>

// What detection may probe for. The first four are not read.
struct KXModemDetectOptions {
  bool bOption0;
  bool bOption1;
  bool bOption2;
  bool bOption3;
  bool bDetectTDMA;  // IS-136 tokens and the ATI3/ATI0 pages
  bool bDetectGSM;   // "+CGSM" with its iDEN check, and the GPRS and EDGE probes
};

// Names the radio behind the device's answers to "AT+GCAP\r" (V.250 6.1.9) and its kin. Gives
// PLATFORM_UNKNOWN when nothing is recognised. model becomes the corrected name of the few handsets
// that need one, else empty. Sets no error code.
KXWAN_API CHandsetPlatform DetectHandsetPlatform(CSModem* modem, KXModemDetectOptions* options,
                                                 CString& model);

// Sets the port's speed and detects. False, with platform 0, when "ATE0V1\r" got no final result.
KXWAN_API bool DetectWirelessPhone(CSModem* modem, unsigned long baudRate,
                                   CHandsetPlatform& platform);

// The answers to "AT+GMM\r" and "AT+GMI\r" (V.250 6.1.4, 6.1.5), empty where none came. Always
// true: an answer of ERROR counts as an empty text.
KXWAN_API bool GetModelAndManufacturer(CSModem* modem, CString& model, CString& manufacturer);

// Sends the command as it stands (with its "\r") and gives the reply. True for any final result.
KXWAN_API bool SendATCommandAndGetReply(CSModem* modem, const char* command, CString& reply);
