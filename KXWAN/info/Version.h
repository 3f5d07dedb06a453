#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/info/ModemInfo.h>
#include <KXWAN/modem/CSModem.h>

// Stores the firmware's version in info->szVersion. Sends "AT+GMR\r" (V.250 6.1.6), then
// "AT+CGMR\r" (3GPP TS 27.007 5.3) when that tells nothing, then "ATI3\r". "Error" or "Unknown"
// stands in the field when nothing was answered.
KXWAN_API void GetModemVersion(CSModem* modem, ModemInfo* info);
