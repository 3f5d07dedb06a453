#pragma once

#include <KXWAN/foundation/CString.h>
#include <KXWAN/foundation/Export.h>
#include <KXWAN/handset/CHandsetPlatform.h>
#include <KXWAN/modem/CSModem.h>

// Moves device and port to the fastest line speed worth trying for the platform. baudRate holds the
// speed in use, in bits per second, on entry and on return. Sends "AT+IPR=?\r" (V.250 6.2.10), then
// what IsPortSpeedSupported sends for each candidate. A device without GPRS and 1xRTT is sent
// nothing. Always true.
KXWAN_API bool DetectModemBaudRate(CSModem* modem, CHandsetPlatform platform,
                                   unsigned long& baudRate);

// Tries to move device and port from currentSpeed to newSpeed: "ATE0V1\r" at the new speed, then
// "AT+IPR=" with the speed at the current one, provided that iprReply, the answer to "AT+IPR=?\r",
// holds the speed's digits, and the check again. False leaves the port at currentSpeed; a device
// that took "AT+IPR=" and did not answer afterwards may stand at newSpeed.
KXWAN_API bool IsPortSpeedSupported(CSModem* modem, unsigned long newSpeed,
                                    unsigned long currentSpeed, CString& iprReply);
