#include <KXWAN/info/ModemInfo.h>

#include <cstddef>
#include <new>

static_assert(offsetof(ModemInfo, bIsGTRAN) == 0);
static_assert(offsetof(ModemInfo, bNonCDMA) == 1);
static_assert(offsetof(ModemInfo, bSIMNotInserted) == 2);
static_assert(offsetof(ModemInfo, dwDeviceFlags) == 4);
static_assert(offsetof(ModemInfo, dwBatteryLevel) == 8);
static_assert(offsetof(ModemInfo, nSignalLevel) == 12);
static_assert(offsetof(ModemInfo, szCapabilities) == 16);
static_assert(offsetof(ModemInfo, szCoverage) == 80);
static_assert(offsetof(ModemInfo, szManufacturer) == 144);
static_assert(offsetof(ModemInfo, szModel) == 208);
static_assert(offsetof(ModemInfo, szReserved) == 272);
static_assert(offsetof(ModemInfo, szVersion) == 336);
static_assert(sizeof(ModemInfo::szVersion) == 64);
static_assert(sizeof(ModemInfo) == 400);

ModemInfo* CreateModemInfo() { return new (std::nothrow) ModemInfo(); }

long ReleaseModemInfo(ModemInfo* info) {
  delete info;
  return 0;
}
