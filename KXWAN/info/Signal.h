#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/info/ModemInfo.h>
#include <KXWAN/modem/CSModem.h>

// Stores the signal level in info->nSignalLevel: 3.2 for each step of the reported strength, so
// that 0 to 31 becomes 0 to 99; 0 when the device cannot tell (99). Sends "AT+CSQ\r" (3GPP TS
// 27.007 8.5), or "AT+CSQ?\r" (IS-707) when dwDeviceFlags name no 3GPP device. False leaves a level
// of 0: the device did not answer OK.
KXWAN_API bool GetSignalLevelFromDevice(CSModem* modem, ModemInfo* info);

// Stores what service the device has in info->szCoverage. A CDMA device is asked "AT+CAD?\r"
// (IS-707): "No Service", "CDMA Digital Service", "TDMA Digital Service", "Analog Service" or
// "Unknown Service". For other devices (bNonCDMA), and when that is not answered, it follows from
// nSignalLevel: "Digital" from 1 on, else "Unknown".
KXWAN_API void GetModemCoverage(CSModem* modem, ModemInfo* info);
