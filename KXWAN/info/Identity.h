#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/info/ModemInfo.h>
#include <KXWAN/modem/CSModem.h>

// Stores the maker's name in info->szManufacturer, sets bIsGTRAN when it contains "GTRAN" and
// clears dwDeviceFlags. Sends "ATE0V1\r", "AT+GMI\r" (V.250 6.1.4) and, as long as none is
// answered, "AT+CGMI\r" (3GPP TS 27.007 5.1) and "AT+FMFR?\r" (IS-707). False, with an empty name,
// only when "ATE0V1\r" got no final result.
KXWAN_API bool GetManufacturerString(CSModem* modem, ModemInfo* info);

// Stores the model's name, without any double quote, in info->szModel. Sends "AT+GMM\r" (V.250
// 6.1.5) and, when the answer is no name, "AT+CGMM\r", "AT+FMDL?\r", "ATI3\r" and "ATI0\r" as far
// as needed. Always true; "Error" or "Unknown" stands in the field when nothing was answered.
KXWAN_API bool GetModelString(CSModem* modem, ModemInfo* info);

// Stores the firmware's version in info->szVersion. Sends "AT+GMR\r" (V.250 6.1.6), then
// "AT+CGMR\r" (3GPP TS 27.007 5.3) when that tells nothing, then "ATI3\r". "Error" or "Unknown"
// stands in the field when nothing was answered.
KXWAN_API void GetModemVersion(CSModem* modem, ModemInfo* info);
