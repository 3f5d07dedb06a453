#pragma once

#include <KXWAN/foundation/Export.h>

#include <cstdint>

// All that the library can read from a device. The layout is frozen: applications read the fields
// directly. Every text is NUL-terminated and at most 62 characters long; a query that the device
// refused leaves the word "Error" in its field, one that it answered with nothing "Unknown".
struct ModemInfo {
  uint8_t bIsGTRAN;         // 1 when the manufacturer's name contains "GTRAN"
  uint8_t bNonCDMA;         // 1 for GSM, GPRS, EDGE and TDMA: coverage follows the signal level
  uint8_t bSIMNotInserted;  // 1 when the SIM probe found none
  uint32_t dwDeviceFlags;   // PLATFORM_GSM, _GPRS or _TDMA; 0 for CDMA and for unknown
  uint32_t dwBatteryLevel;  // percent
  int32_t nSignalLevel;     // 0 to 99; 0 for no signal and for unknown
  char szCapabilities[64];  // data technology, such as "GPRS Data"
  char szCoverage[64];      // such as "CDMA Digital Service" or "Digital"
  char szManufacturer[64];  // without the double quotes around it
  char szModel[64];         // without any double quote
  char szReserved[64];      // kept for the layout, never written
  char szVersion[64];       // firmware
};

// A record of zeros, or null when there is no memory. The caller releases it.
KXWAN_API ModemInfo* CreateModemInfo();

// Frees a record that CreateModemInfo gave; null is allowed. Always gives 0.
KXWAN_API long ReleaseModemInfo(ModemInfo* info);
