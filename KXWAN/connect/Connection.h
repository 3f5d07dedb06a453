#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/modem/CSModem.h>
#include <KXWAN/modem/KXModemProperties.h>

// Readies a device for a packet-data call. Clears the last error, then goes by the bits of
// properties->dwDeviceType; the first that fits decides:
//   PLATFORM_1XQNC              SetPhoneIn1XMode for Quick Net Connect
//   PLATFORM_1X_SPRINT          SetPhoneIn1XModeForSprint
//   PLATFORM_1XRTT              SetPhoneIn1XMode for 1xRTT packet data
//   PLATFORM_GPRS, EDGE, UMTS   SetPhoneInGPRSMode
// Any other device needs nothing: true, and nothing is sent. The texts of properties are
// NUL-terminated; apn is used for GPRS, EDGE and UMTS only and may be null.
//
// False leaves the reason in the last-error cell (ConnectError.h) and the device as far as it got.
KXWAN_API bool PrepareDeviceForConnection(CSModem* modem, KXModemProperties* properties,
                                          const char* apn);
