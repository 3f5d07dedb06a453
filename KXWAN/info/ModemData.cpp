#include <KXWAN/info/ModemData.h>

#include <KXWAN/info/Capabilities.h>
#include <KXWAN/info/Identity.h>
#include <KXWAN/info/Signal.h>

// The order matters: the capabilities decide how signal and coverage are read, and coverage reads
// the signal level.
bool GetModemData(CSModem* modem, ModemInfo* info) {
  *info = ModemInfo();
  if (!GetManufacturerString(modem, info)) return false;
  GetModelString(modem, info);
  GetCapabilitiesKey(modem, info);
  GetModemVersion(modem, info);
  GetSignalLevelFromDevice(modem, info);
  // Deliberate: the battery stays out; an application polls it by itself.
  GetModemCoverage(modem, info);
  return true;
}
