#include <KXWAN/info/Capabilities.h>

#include <KXWAN/foundation/TablePrivate.h>
#include <KXWAN/handset/CHandsetPlatform.h>
#include <KXWAN/info/QueryPrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>

#include <iterator>
#include <string>
#include <string_view>

using kxwan::Answer;
using kxwan::Contains;
using kxwan::Exchange;
using kxwan::Query;
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

void SettleCapabilities(CSModem* modem, ModemInfo* info) {
  std::string answer;
  if (!Query(modem, "AT+GCAP\r", "+GCAP:", answer)) {
    // Deliberate: a device that cannot list its capabilities is called "Data" whatever else it
    // answers; only the flags that the GSM probe sets stay.
    GSMCapabilities(modem, info);
    SetField(info->szCapabilities, "Data");
    return;
  }
  const Capability& row = kxwan::FirstRow(
      kCapabilities, [&](const Capability& each) { return Contains(answer, each.token); });
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
  if (!kxwan::Accepts(modem, "AT+CMEE=1\r")) return;
  // Deliberate: only a plain ERROR that carries the code as its text counts, not the equipment
  // error that most devices report. Entering the PIN reads its answers the same way.
  const Answer state = Exchange(modem, "AT+CPIN?\r");
  if (state.result == kxwan::kResultError && state.text == "10") info->bSIMNotInserted = 1;
  Exchange(modem, "AT+CMEE=0\r");
}

bool ListsAttach(CSModem* modem) {
  std::string answer;
  return Query(modem, "AT+CGATT=?\r", "+CGATT:", answer) && Contains(answer, "1");
}

// Deliberate: EDGE has no answer of its own. A device that rejects the GPRS quality of service and
// knows the 3G one is taken to have it; its flag stays GPRS.
bool KnowsOnly3GQualityOfService(CSModem* modem) {
  return Exchange(modem, "AT+CGQMIN=?\r").result == kxwan::kResultError &&
         kxwan::Accepts(modem, "AT+CGEQMIN=?\r");
}

void NameByPages(CSModem* modem, ModemInfo* info) {
  std::string page;
  if (!Query(modem, "ATI3\r", nullptr, page)) return;
  if (Contains(page, "TDMA")) {
    SettleTdma(modem, info);
    return;
  }
  if (!Contains(page, "NSW-5")) return;
  Query(modem, "ATI0\r", nullptr, page);
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
