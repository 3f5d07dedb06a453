#include <KXWAN/handset/Detection.h>

#include <KXWAN/foundation/TablePrivate.h>
#include <KXWAN/handset/DetectionPrivate.h>

#include <iterator>
#include <string_view>

using kxwan::Answer;
using kxwan::Contains;
using kxwan::Exchange;

namespace {

CHandsetPlatform EvDo(CSModem*, std::string_view, CString&) { return PLATFORM_1XEVDO; }

CHandsetPlatform EvDoByRevision(CSModem*, std::string_view capabilities, CString&) {
  return Contains(capabilities, "CIS-856-A") ? PLATFORM_1XEVDO | PLATFORM_1XEVDO_REVA
                                             : PLATFORM_1XEVDO;
}

// Two EV-DO cards list only their 1xRTT side. The result code does not matter, only the text.
CHandsetPlatform OneXRttByModel(CSModem* modem, std::string_view, CString&) {
  const Answer model = Exchange(modem, "AT+GMM\r");
  const bool evDo = Contains(model.text, "5220") || Contains(model.text, "AC580");
  return evDo ? PLATFORM_1XRTT | PLATFORM_1XEVDO : PLATFORM_1XRTT;
}

CHandsetPlatform CdmaByModel(CSModem* modem, std::string_view, CString&) {
  return Contains(Exchange(modem, "AT+GMM\r").text, "Model 69") ? PLATFORM_1XRTT : PLATFORM_CDMA;
}

// iDEN handsets list "+CGSM" too.
CHandsetPlatform GsmOrIden(CSModem* modem, std::string_view, CString&) {
  const Answer maker = Exchange(modem, "AT+FMFR?\r");
  return maker.IsOk() && Contains(maker.text, "iDEN") ? PLATFORM_IDEN : PLATFORM_GSM;
}

// Handsets that name themselves by a part number: the whole "AT+CGMM" answer, and their name.
struct NamedHandset {
  const char* reply;
  const char* model;
};

constexpr NamedHandset kNamedHandsets[] = {
    {"1190501", "Ericsson R278d"},
    {"1190601-BVT60d", "Ericsson T60d"},
};

CHandsetPlatform NamedTdma(CSModem* modem, std::string_view, CString& model) {
  const Answer name = Exchange(modem, "AT+CGMM\r");
  const NamedHandset* row = kxwan::FindRow(
      kNamedHandsets, [&](const NamedHandset& each) { return name.text == each.reply; });
  if (name.IsOk() && row != nullptr) model = row->model;
  return PLATFORM_TDMA;
}

CHandsetPlatform Tdma(CSModem*, std::string_view, CString&) { return PLATFORM_TDMA; }

CHandsetPlatform Unknown(CSModem*, std::string_view, CString&) { return PLATFORM_UNKNOWN; }

// What a token in the capability list (V.250 6.1.9) says. The first row that fits decides.
struct CapabilityRule {
  const char* token = "";                           // "" fits any list
  bool KXModemDetectOptions::*allowedBy = nullptr;  // null: always allowed
  CHandsetPlatform (*platform)(CSModem*, std::string_view capabilities, CString& model) = Unknown;
};

// Deliberate: "+CIS707A" without a hyphen is EV-DO while "+CIS707-A" is 1xRTT; that is what the
// devices that list them are.
constexpr CapabilityRule kCapabilityRules[] = {
    {.token = "+CIS707A", .platform = EvDo},
    {.token = "CIS-856", .platform = EvDoByRevision},
    {.token = "+CEVDO", .platform = EvDoByRevision},
    {.token = "+CIS707-A", .platform = OneXRttByModel},
    {.token = "+CIS707", .platform = CdmaByModel},
    {.token = "+CGSM", .allowedBy = &KXModemDetectOptions::bDetectGSM, .platform = GsmOrIden},
    {.token = "IS-135", .allowedBy = &KXModemDetectOptions::bDetectTDMA, .platform = NamedTdma},
    {.token = "TIA-136", .allowedBy = &KXModemDetectOptions::bDetectTDMA, .platform = Tdma},
    {.token = ""},
};
static_assert(*std::rbegin(kCapabilityRules)->token == '\0', "the last row must fit any list");

// Some devices list their capabilities only when they are read as a parameter.
Answer ReadCapabilities(CSModem* modem) {
  const Answer list = Exchange(modem, "AT+GCAP\r");
  return list.result == kxwan::kResultError ? Exchange(modem, "AT+GCAP?\r") : list;
}

CHandsetPlatform PlatformByCapabilities(CSModem* modem, const KXModemDetectOptions& options,
                                        CString& model) {
  const Answer list = ReadCapabilities(modem);
  if (!list.IsOk()) return PLATFORM_UNKNOWN;
  const CapabilityRule& rule = kxwan::FirstRow(kCapabilityRules, [&](const CapabilityRule& row) {
    const bool allowed = row.allowedBy == nullptr || options.*row.allowedBy;
    return allowed && Contains(list.text, row.token);
  });
  return rule.platform(modem, list.text, model);
}

// UMTS cards that do not tell by their capabilities.
struct UmtsCard {
  const char* manufacturer;
  const char* model;
};

constexpr UmtsCard kUmtsCards[] = {{"Novatel", "Merlin U"}, {"Novatel", "Merlin TU"}};

bool IsNamedUmtsCard(CSModem* modem) {
  const kxwan::DeviceNames names = kxwan::ReadDeviceNames(modem);
  const auto fits = kxwan::FitsDevice(names.manufacturer.text.c_str(), names.model.text.c_str());
  return kxwan::FindRow(kUmtsCards, fits) != nullptr;
}

// Devices that are known only by their identification page, ATI3. The first row that fits decides.
struct PageRule {
  const char* token = "";  // occurs in ATI3
  CHandsetPlatform platform = PLATFORM_UNKNOWN;
  const char* confirmedBy = "";  // must occur in ATI0, unless ""
  const char* model = "";        // the corrected name
};

constexpr PageRule kPageRules[] = {
    {.token = "TDMA", .platform = PLATFORM_TDMA},
    {.token = "NSW-5",
     .platform = PLATFORM_TDMA,
     .confirmedBy = "Nokia Mobile",
     .model = "Nokia 7160"},
    {.token = "Merlin U630", .platform = PLATFORM_UMTS | PLATFORM_GPRS},
};

bool IsConfirmed(CSModem* modem, const PageRule& row) {
  if (*row.confirmedBy == '\0') return true;
  const Answer page = Exchange(modem, "ATI0\r");
  return page.IsOk() && Contains(page.text, row.confirmedBy);
}

CHandsetPlatform PlatformByPage(CSModem* modem, CString& model) {
  const Answer page = Exchange(modem, "ATI3\r");
  if (!page.IsOk()) return PLATFORM_UNKNOWN;
  const PageRule* row = kxwan::FindRow(
      kPageRules, [&](const PageRule& each) { return Contains(page.text, each.token); });
  if (row == nullptr || !IsConfirmed(modem, *row)) return PLATFORM_UNKNOWN;
  model = row->model;
  return row->platform;
}

CHandsetPlatform PacketServices(CSModem* modem) {
  const Answer attach = Exchange(modem, "AT+CGATT=?\r");
  if (!attach.IsOk() || !Contains(attach.text, "+CGATT:")) return PLATFORM_UNKNOWN;
  const bool edge = kxwan::Accepts(modem, "AT+CGEQMIN=?\r");
  return edge ? PLATFORM_GPRS | PLATFORM_EDGE : PLATFORM_GPRS;
}

void CopyReply(const Answer& answer, CString& reply) {
  reply.Empty();
  if (answer.Came()) reply = answer.text.c_str();
}

}  // namespace

CHandsetPlatform DetectHandsetPlatform(CSModem* modem, KXModemDetectOptions* options,
                                       CString& model) {
  model.Empty();
  CHandsetPlatform platform = PlatformByCapabilities(modem, *options, model);
  if (IsNamedUmtsCard(modem)) {
    platform |= PLATFORM_UMTS;
  } else if (platform == PLATFORM_UNKNOWN && options->bDetectTDMA) {
    platform = PlatformByPage(modem, model);
  }
  const bool mayHavePackets = platform == PLATFORM_UNKNOWN || (platform & PLATFORM_GSM) != 0;
  if (!mayHavePackets || !options->bDetectGSM) return platform;
  return platform | PacketServices(modem);
}

bool DetectWirelessPhone(CSModem* modem, unsigned long baudRate, CHandsetPlatform& platform) {
  kxwan::SetPortSpeed(modem, baudRate);
  platform = PLATFORM_UNKNOWN;
  const Answer answer = Exchange(modem, "ATE0V1\r");
  if (!answer.Came()) return false;
  if (answer.result == kxwan::kResultError) Exchange(modem, "AT+CFUN=1\r");
  KXModemDetectOptions options = {true, false, true, true, true, true};
  kxwan::ScopedText model;
  platform = DetectHandsetPlatform(modem, &options, model);
  return true;
}

// Deliberate: the result codes are not looked at; an answer of ERROR counts as an empty text.
kxwan::DeviceNames kxwan::ReadDeviceNames(CSModem* modem) {
  return {Exchange(modem, "AT+GMM\r"), Exchange(modem, "AT+GMI\r")};
}

bool GetModelAndManufacturer(CSModem* modem, CString& model, CString& manufacturer) {
  const kxwan::DeviceNames names = kxwan::ReadDeviceNames(modem);
  CopyReply(names.model, model);
  CopyReply(names.manufacturer, manufacturer);
  return true;
}

bool SendATCommandAndGetReply(CSModem* modem, const char* command, CString& reply) {
  const Answer answer = Exchange(modem, command);
  CopyReply(answer, reply);
  return answer.Came();
}
