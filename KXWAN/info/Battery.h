#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/info/ModemInfo.h>
#include <KXWAN/modem/CSModem.h>

#include <cstdint>

// Stores the charge in percent in info->dwBatteryLevel. Sends "AT+CBC\r" (3GPP TS 27.007 8.4), or
// "AT+CBC?\r" (IS-707) when dwDeviceFlags name no 3GPP device. The last number of the answer is the
// level; on external power a level of 0 counts as 100. False leaves the level untouched: the
// device did not answer OK.
KXWAN_API bool GetBatteryLevelFromDevice(CSModem* modem, ModemInfo* info);

namespace kxwan {

// What a device says about its supply. -1 where it does not say.
struct BatteryReading {
  int32_t status;      // 0 on battery, 1 on external power, 2 no battery, 3 fault
  int32_t percent;     // 0 to 100
  int32_t millivolts;  // 1000 and more
};

// Reads the battery of a device that reports percent, a voltage, or both: "0,85", "0,85,3900",
// "3900" and "3.900V" are told apart by the size of their numbers. Sends "AT+CBC\r" and, when that
// is not answered with a report, "AT+CBC?\r". False leaves reading untouched.
KXWAN_API bool ReadBattery(CSModem* modem, BatteryReading& reading);

}  // namespace kxwan
