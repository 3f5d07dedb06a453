#include <KXWAN/connect/GprsSetup.h>

#include <KXWAN/connect/ConnectError.h>
#include <KXWAN/connect/GprsProfilePrivate.h>
#include <KXWAN/foundation/Clock.h>
#include <KXWAN/foundation/LastErrorPrivate.h>
#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/handset/CHandsetPlatform.h>
#include <KXWAN/modem/ExchangePrivate.h>

#include <algorithm>
#include <string>
#include <string_view>

using kxwan::Accepts;
using kxwan::Fail;
using kxwan::Formatted;
using kxwan::GprsProfile;

namespace {

constexpr uint32_t kAttachTimeoutMs = 15000;
constexpr uint32_t kOrdinaryTimeoutMs = 1500;
constexpr unsigned long kContextPauseMs = 500;
constexpr size_t kLongestApn = 100;

bool Attach(CSModem* modem) {
  const kxwan::Answer state = kxwan::Exchange(modem, "AT+CGATT?\r");
  if (!state.IsOk()) return Fail(kxwan::kNotAnswered);
  if (kxwan::Contains(state.text, "+CGATT: 1")) return true;

  modem->m_dwResponseTimeout = kAttachTimeoutMs;
  const bool attached = Accepts(modem, "AT+CGATT=1\r");
  // Deliberate: not what it was before. Applications count on the ordinary time-out from here on.
  modem->m_dwResponseTimeout = kOrdinaryTimeoutMs;
  return attached || Fail(kxwan::kAttachFailed);
}

bool DefineContext(CSModem* modem, int contextId, const char* apn) {
  const std::string command = Formatted("AT+CGDCONT=%d,\"IP\",\"%s\"\r", contextId, apn);
  return Accepts(modem, command.c_str()) || Fail(kxwan::kContextRefused);
}

// Minimum and requested profile of the context, all parameters left to the subscription.
bool RequestQos(CSModem* modem, const GprsProfile& profile, CHandsetPlatform platform) {
  const bool edge = (platform & PLATFORM_EDGE) != 0;
  const char* shortForm = edge ? "AT+CGEQMIN=%d;+CGEQREQ=%d\r" : "AT+CGQMIN=%d;+CGQREQ=%d\r";
  const char* longForm = "AT+CGQMIN=%d,0,0,0,0,0;+CGQREQ=%d,0,0,0,0,0\r";
  const std::string command =
      Formatted(profile.qosByEdge ? shortForm : longForm, profile.contextId, profile.contextId);
  return Accepts(modem, command.c_str()) || Fail(kxwan::kContextRefused);
}

}  // namespace

bool SetPhoneInGPRSMode(CSModem* modem, KXModemProperties* properties, const char* apn) {
  if (kxwan::Equals(apn, "")) return true;
  const GprsProfile& profile =
      kxwan::FindGprsProfile(properties->szManufacturer, properties->szModel);
  if (!Attach(modem) || !DefineContext(modem, profile.contextId, apn)) return false;

  WaitMilliSecond(kContextPauseMs);
  if (profile.sendNwhfun) {
    Accepts(modem, "AT+NWHFUN=0\r");  // a card that does not know it connects all the same
    return true;
  }
  return profile.skipQos || RequestQos(modem, profile, properties->dwDeviceType);
}

namespace kxwan {

bool IsApn(const char* text) {
  const std::string_view apn = text != nullptr ? text : "";
  return !apn.empty() && apn.size() <= kLongestApn &&
         std::all_of(apn.begin(), apn.end(), [](char c) { return IsPrintable(c) && c != '"'; });
}

}  // namespace kxwan
