#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/info/ModemInfo.h>
#include <KXWAN/modem/CSModem.h>

// Clears the record and fills it: manufacturer, model, capabilities, version, signal level and
// coverage, in this order; see GetManufacturerString, GetModelString, GetCapabilitiesKey,
// GetModemVersion, GetSignalLevelFromDevice and GetModemCoverage for the commands. The battery is
// not read. False, with the record cleared, only when "ATE0V1\r" got no final result.
KXWAN_API bool GetModemData(CSModem* modem, ModemInfo* info);
