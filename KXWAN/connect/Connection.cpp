#include <KXWAN/connect/Connection.h>

#include <KXWAN/connect/ConnectError.h>
#include <KXWAN/connect/GprsSetup.h>
#include <KXWAN/connect/OneXSetup.h>
#include <KXWAN/foundation/LastError.h>
#include <KXWAN/foundation/TablePrivate.h>
#include <KXWAN/handset/CHandsetPlatform.h>

#include <iterator>

namespace {

using Preparation = bool (*)(CSModem* modem, KXModemProperties* properties, const char* apn);

bool PrepareQuickNetConnect(CSModem* modem, KXModemProperties* properties, const char*) {
  return SetPhoneIn1XMode(modem, properties->szModel, /*oneXMode=*/false);
}

bool PrepareSprint(CSModem* modem, KXModemProperties* properties, const char*) {
  return SetPhoneIn1XModeForSprint(modem, properties->szModel, /*oneXMode=*/true);
}

bool PrepareOneX(CSModem* modem, KXModemProperties* properties, const char*) {
  return SetPhoneIn1XMode(modem, properties->szModel, /*oneXMode=*/true);
}

// Plain GSM, CDMA, EV-DO, TDMA and iDEN devices dial as they are.
bool PrepareNothing(CSModem*, KXModemProperties*, const char*) { return true; }

struct PlatformRow {
  CHandsetPlatform bits;  // any of them; 0 fits every device
  Preparation prepare;
};

// The first row that fits wins. The modes that a caller chooses stand above what detection finds.
constexpr PlatformRow kPlatforms[] = {
    {PLATFORM_1XQNC, PrepareQuickNetConnect},
    {PLATFORM_1X_SPRINT, PrepareSprint},
    {PLATFORM_1XRTT, PrepareOneX},
    {PLATFORM_GPRS | PLATFORM_EDGE | PLATFORM_UMTS, SetPhoneInGPRSMode},
    {0, PrepareNothing},
};
static_assert(std::rbegin(kPlatforms)->bits == 0, "the last row must fit any device");

}  // namespace

bool PrepareDeviceForConnection(CSModem* modem, KXModemProperties* properties, const char* apn) {
  SetModemError(kxwan::kNoConnectError);
  const CHandsetPlatform platform = properties->dwDeviceType;
  const PlatformRow& row = kxwan::FirstRow(kPlatforms, [platform](const PlatformRow& each) {
    return each.bits == 0 || (platform & each.bits) != 0;
  });
  return row.prepare(modem, properties, apn);
}
