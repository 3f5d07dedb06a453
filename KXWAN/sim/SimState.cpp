#include <KXWAN/sim/SimState.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/sim/EquipmentError.h>
#include <KXWAN/sim/SimCodes.h>

#include <algorithm>
#include <string_view>

namespace {

constexpr long kShortestMaximum = 8;  // every card takes a PIN of 8 digits

}  // namespace

long IsPasswordRequired(CSModem* modem, long* pinLength) {
  *pinLength = 0;
  long state = CheckSIMState(modem, "AT+CMEE=1;+CPIN?\r");
  if (state == kxwan::kSimOtherError) {
    state = CheckSIMState(modem, "AT+CPIN?\r");
    // Deliberate: a state that cannot be told twice over must not keep the user from connecting.
    if (state == kxwan::kSimOtherError) return kxwan::kSimReady;
  }
  if (state == kxwan::kSimPinRequired || state == kxwan::kSimPukRequired) {
    *pinLength = GetSIMPINLength(modem);
  }
  return state;
}

long CheckSIMState(CSModem* modem, const char* command) {
  kxwan::ScopedText reply;
  int result = kxwan::kResultTimeout;
  if (!modem->SendCommandGetResponse(command, result, reply)) return kxwan::kSimNoAnswer;
  // Deliberate: the text behind OK is not looked at, and a plain ERROR counts as ready. Only
  // devices that report the state as an equipment error are told apart here.
  return result == kxwan::kResultEquipmentError ? DecodeCMError(reply) : kxwan::kSimReady;
}

long GetSIMPINLength(CSModem* modem) {
  constexpr std::string_view kLockEntry = "(\"SC\",";
  kxwan::ScopedText reply;
  int result = kxwan::kResultTimeout;
  const bool answered = modem->SendCommandGetResponse("AT+CPWD=?\r", result, reply);
  if (!answered || result != kxwan::kResultOk) return 0;

  const std::string_view text = kxwan::View(reply);
  const size_t entry = text.find(kLockEntry);
  if (entry == std::string_view::npos) return 0;
  const std::string_view length = text.substr(entry + kLockEntry.size());
  const size_t end = length.find(')');
  if (end == std::string_view::npos) return 0;
  return std::max<long>(kxwan::ToInt(length.substr(0, end)), kShortestMaximum);
}
