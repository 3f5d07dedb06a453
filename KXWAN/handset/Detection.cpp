#include <KXWAN/handset/Detection.h>

#include <KXWAN/foundation/TextPrivate.h>

#include <algorithm>

namespace {

using kxwan::Contains;
using kxwan::Equals;
using kxwan::ScopedText;

bool AnswersOk(CSModem* modem, const char* command, CString& reply) {
  int result = kxwan::kResultTimeout;
  return modem->SendCommandGetResponse(command, result, reply) && result == kxwan::kResultOk;
}

CHandsetPlatform EvDo(CSModem*, const CString&, CString&) { return PLATFORM_1XEVDO; }

CHandsetPlatform EvDoByRevision(CSModem*, const CString& capabilities, CString&) {
  return Contains(capabilities, "CIS-856-A") ? PLATFORM_1XEVDO | PLATFORM_1XEVDO_REVA
                                             : PLATFORM_1XEVDO;
}

// Two EV-DO cards list only their 1xRTT side. The result code does not matter, only the text.
CHandsetPlatform OneXRttByModel(CSModem* modem, const CString&, CString&) {
  int result = kxwan::kResultTimeout;
  ScopedText reply;
  const bool answered = modem->SendCommandGetResponse("AT+GMM\r", result, reply);
  const bool evDo = answered && (Contains(reply, "5220") || Contains(reply, "AC580"));
  return evDo ? PLATFORM_1XRTT | PLATFORM_1XEVDO : PLATFORM_1XRTT;
}

CHandsetPlatform CdmaByModel(CSModem* modem, const CString&, CString&) {
  int result = kxwan::kResultTimeout;
  ScopedText reply;
  const bool answered = modem->SendCommandGetResponse("AT+GMM\r", result, reply);
  return answered && Contains(reply, "Model 69") ? PLATFORM_1XRTT : PLATFORM_CDMA;
}

// iDEN handsets list "+CGSM" too.
CHandsetPlatform GsmOrIden(CSModem* modem, const CString&, CString&) {
  ScopedText reply;
  const bool iden = AnswersOk(modem, "AT+FMFR?\r", reply) && Contains(reply, "iDEN");
  return iden ? PLATFORM_IDEN : PLATFORM_GSM;
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

CHandsetPlatform NamedTdma(CSModem* modem, const CString&, CString& model) {
  ScopedText reply;
  if (!AnswersOk(modem, "AT+CGMM\r", reply)) return PLATFORM_TDMA;
  for (const NamedHandset& row : kNamedHandsets) {
    if (Equals(reply, row.reply)) model = row.model;
  }
  return PLATFORM_TDMA;
}

CHandsetPlatform Tdma(CSModem*, const CString&, CString&) { return PLATFORM_TDMA; }

CHandsetPlatform Unknown(CSModem*, const CString&, CString&) { return PLATFORM_UNKNOWN; }

// What a token in the capability list (V.250 6.1.9) says. The first row that fits decides.
struct CapabilityRule {
  const char* token = "";                           // "" fits any list
  bool KXModemDetectOptions::*allowedBy = nullptr;  // null: always allowed
  CHandsetPlatform (*platform)(CSModem*, const CString& capabilities, CString& model) = Unknown;
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
bool ReadCapabilities(CSModem* modem, CString& capabilities) {
  int result = kxwan::kResultTimeout;
  if (!modem->SendCommandGetResponse("AT+GCAP\r", result, capabilities)) return false;
  if (result != kxwan::kResultError) return result == kxwan::kResultOk;
  return AnswersOk(modem, "AT+GCAP?\r", capabilities);
}

CHandsetPlatform PlatformByCapabilities(CSModem* modem, const KXModemDetectOptions& options,
                                        CString& model) {
  ScopedText capabilities;
  if (!ReadCapabilities(modem, capabilities)) return PLATFORM_UNKNOWN;
  const auto fits = [&](const CapabilityRule& row) {
    const bool allowed = row.allowedBy == nullptr || options.*row.allowedBy;
    return allowed && Contains(capabilities, row.token);
  };
  return std::find_if(std::begin(kCapabilityRules), std::end(kCapabilityRules), fits)
      ->platform(modem, capabilities, model);
}

// UMTS cards that do not tell by their capabilities.
struct UmtsCard {
  const char* manufacturer;
  const char* model;
};

constexpr UmtsCard kUmtsCards[] = {{"Novatel", "Merlin U"}, {"Novatel", "Merlin TU"}};

bool IsNamedUmtsCard(CSModem* modem) {
  ScopedText model;
  ScopedText manufacturer;
  GetModelAndManufacturer(modem, model, manufacturer);
  return std::any_of(std::begin(kUmtsCards), std::end(kUmtsCards), [&](const UmtsCard& row) {
    return Contains(manufacturer, row.manufacturer) && Contains(model, row.model);
  });
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
  ScopedText page;
  return *row.confirmedBy == '\0' ||
         (AnswersOk(modem, "ATI0\r", page) && Contains(page, row.confirmedBy));
}

CHandsetPlatform PlatformByPage(CSModem* modem, CString& model) {
  ScopedText page;
  if (!AnswersOk(modem, "ATI3\r", page)) return PLATFORM_UNKNOWN;
  const PageRule* end = std::end(kPageRules);
  const PageRule* row = std::find_if(
      kPageRules, end, [&](const PageRule& each) { return Contains(page, each.token); });
  if (row == end || !IsConfirmed(modem, *row)) return PLATFORM_UNKNOWN;
  model = row->model;
  return row->platform;
}

CHandsetPlatform PacketServices(CSModem* modem) {
  ScopedText attach;
  if (!AnswersOk(modem, "AT+CGATT=?\r", attach) || !Contains(attach, "+CGATT:")) {
    return PLATFORM_UNKNOWN;
  }
  ScopedText quality;
  const bool edge = AnswersOk(modem, "AT+CGEQMIN=?\r", quality);
  return edge ? PLATFORM_GPRS | PLATFORM_EDGE : PLATFORM_GPRS;
}

void CopyAnswer(CSModem* modem, const char* command, CString& answer) {
  int result = kxwan::kResultTimeout;
  ScopedText reply;
  answer.Empty();
  if (modem->SendCommandGetResponse(command, result, reply)) answer = reply.String();
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
  modem->m_pSerial->SetDataFormat(baudRate, E_PARITY_UNCHANGED, E_BYTESIZE_UNCHANGED,
                                  E_STOPBITS_UNCHANGED);
  platform = PLATFORM_UNKNOWN;
  int result = kxwan::kResultTimeout;
  ScopedText response;
  if (!modem->SendCommandGetResponse("ATE0V1\r", result, response)) return false;
  if (result == kxwan::kResultError) {
    ScopedText ignored;
    modem->SendCommandGetResponse("AT+CFUN=1\r", result, ignored);
  }
  KXModemDetectOptions options = {true, false, true, true, true, true};
  ScopedText model;
  platform = DetectHandsetPlatform(modem, &options, model);
  return true;
}

// Deliberate: the result codes are not looked at; an answer of ERROR counts as an empty text.
bool GetModelAndManufacturer(CSModem* modem, CString& model, CString& manufacturer) {
  manufacturer.Empty();
  CopyAnswer(modem, "AT+GMM\r", model);
  CopyAnswer(modem, "AT+GMI\r", manufacturer);
  return true;
}

bool SendATCommandAndGetReply(CSModem* modem, const char* command, CString& reply) {
  int result = kxwan::kResultTimeout;
  ScopedText response;
  reply.Empty();
  if (!modem->SendCommandGetResponse(command, result, response)) return false;
  reply = response.String();
  return true;
}
