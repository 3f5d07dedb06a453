#include <KXWAN/info/Capabilities.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/handset/CHandsetPlatform.h>
#include <KXWAN/info/QueryPrivate.h>
#include <KXWAN/modem/ResultCode.h>

#include <algorithm>
#include <iterator>
#include <string_view>

using kxwan::Ask;
using kxwan::Contains;
using kxwan::Exchange;
using kxwan::ScopedText;
using kxwan::SetField;

namespace {

void SettleTdma(CSModem*, ModemInfo* info) {
  info->dwDeviceFlags = PLATFORM_TDMA;
  info->bNonCDMA = 1;
  SetField(info->szCapabilities, "TDMA Data");
}

// What a token of the +GCAP answer means: a key, or a step that finds it.
struct Capability {
  std::string_view token;  // "" fits any answer
  const char* key = "";
  void (*settle)(CSModem*, ModemInfo*) = nullptr;
};

// The first row that fits wins. "+CIS707A", without a hyphen, is how EV-DO cards of the first
// generation say it.
constexpr Capability kCapabilities[] = {
    {.token = "+CIS707A", .key = "1xEVDO Digital Data"},
    {.token = "CIS-856-A", .key = "1xEVDO (Rev-A) Digital Data"},
    {.token = "CIS-856", .key = "1xEVDO Digital Data"},
    {.token = "+CEVDO", .key = "1xEVDO Digital Data"},
    {.token = "+CIS707-A", .key = "1xRTT Digital Data"},
    {.token = "+CIS707", .key = "Digital Data"},
    {.token = "+CGSM", .settle = GSMCapabilities},
    {.token = "IS-135", .settle = SettleTdma},
    {.token = "TIA-136", .settle = SettleTdma},
    {.token = "", .settle = SpecialCaseCapabilities},
};
static_assert(std::rbegin(kCapabilities)->token.empty(), "the last row must fit any answer");

const Capability& FindCapability(std::string_view answer) {
  return *std::find_if(
      std::begin(kCapabilities), std::end(kCapabilities),
      [answer](const Capability& row) { return answer.find(row.token) != std::string_view::npos; });
}

void SettleCapabilities(CSModem* modem, ModemInfo* info) {
  ScopedText answer;
  if (!Ask(modem, "AT+GCAP\r", "+GCAP:", answer)) {
    // Deliberate: a device that cannot list its capabilities is called "Data" whatever else it
    // answers; only the flags that the GSM probe sets stay.
    GSMCapabilities(modem, info);
    SetField(info->szCapabilities, "Data");
    return;
  }
  const Capability& row = FindCapability(kxwan::View(answer));
  if (row.settle == nullptr) {
    SetField(info->szCapabilities, row.key);
    return;
  }
  row.settle(modem, info);
  if (info->szCapabilities[0] == '\0') {
    SetField(info->szCapabilities, "Data");
  }
}

void ProbeSim(CSModem* modem, ModemInfo* info) {
  ScopedText answer;
  if (Exchange(modem, "AT+CMEE=1\r", answer) != kxwan::kResultOk) {
    return;
  }
  // Deliberate: only a plain ERROR that carries the code as its text counts, not the equipment
  // error that most devices report. Entering the PIN reads its answers the same way.
  if (Exchange(modem, "AT+CPIN?\r", answer) == kxwan::kResultError && kxwan::Equals(answer, "10")) {
    info->bSIMNotInserted = 1;
  }
  Exchange(modem, "AT+CMEE=0\r", answer);
}

bool ListsAttach(CSModem* modem) {
  ScopedText answer;
  return Ask(modem, "AT+CGATT=?\r", "+CGATT:", answer) && Contains(answer, "1");
}

// Deliberate: EDGE has no answer of its own. A device that rejects the GPRS quality of service and
// knows the 3G one is taken to have it; its flag stays GPRS.
bool KnowsOnly3GQualityOfService(CSModem* modem) {
  ScopedText answer;
  return Exchange(modem, "AT+CGQMIN=?\r", answer) == kxwan::kResultError &&
         Exchange(modem, "AT+CGEQMIN=?\r", answer) == kxwan::kResultOk;
}

void NameByPages(CSModem* modem, ModemInfo* info) {
  ScopedText page;
  if (!Ask(modem, "ATI3\r", nullptr, page)) {
    return;
  }
  if (Contains(page, "TDMA")) {
    SettleTdma(modem, info);
    return;
  }
  if (!Contains(page, "NSW-5")) {
    return;
  }
  Ask(modem, "ATI0\r", nullptr, page);
  if (Contains(page, "Nokia Mobile")) {
    SettleTdma(modem, info);
    SetField(info->szModel, "7160");
  }
}

}  // namespace

bool GetCapabilitiesKey(CSModem* modem, ModemInfo* info) {
  SettleCapabilities(modem, info);
  if ((info->dwDeviceFlags & (PLATFORM_GSM | PLATFORM_GPRS | PLATFORM_EDGE)) != 0) {
    ProbeSim(modem, info);
  }
  return info->dwDeviceFlags != 0;
}

void GSMCapabilities(CSModem* modem, ModemInfo* info) {
  info->dwDeviceFlags = PLATFORM_GSM;
  if (ListsAttach(modem)) {
    info->dwDeviceFlags = PLATFORM_GPRS;
    SetField(info->szCapabilities,
             KnowsOnly3GQualityOfService(modem) ? "EDGE/GPRS/GSM Data" : "GPRS Data");
  }
  if (info->szCapabilities[0] == '\0') {
    SetField(info->szCapabilities, "GSM Data");
  }
  info->bNonCDMA = 1;
}

void SpecialCaseCapabilities(CSModem* modem, ModemInfo* info) {
  NameByPages(modem, info);
  if (info->dwDeviceFlags == 0 && ListsAttach(modem)) {
    info->dwDeviceFlags = PLATFORM_GPRS;
    info->bNonCDMA = 1;
    SetField(info->szCapabilities, "GPRS Data");
  }
}
