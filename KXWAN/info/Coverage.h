#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/info/ModemInfo.h>
#include <KXWAN/modem/CSModem.h>

// Stores what service the device has in info->szCoverage. A CDMA device is asked "AT+CAD?\r"
// (IS-707): "No Service", "CDMA Digital Service", "TDMA Digital Service", "Analog Service" or
// "Unknown Service". For other devices (bNonCDMA), and when that is not answered, it follows from
// nSignalLevel: "Digital" from 1 on, else "Unknown".
KXWAN_API void GetModemCoverage(CSModem* modem, ModemInfo* info);
