#include <KXWAN/sim/SimState.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>
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
  const kxwan::Answer answer = kxwan::Exchange(modem, command);
  if (!answer.Came()) return kxwan::kSimNoAnswer;
  // Deliberate: the text behind OK is not looked at, and a plain ERROR counts as ready. Only
  // devices that report the state as an equipment error are told apart here.
  if (answer.result != kxwan::kResultEquipmentError) return kxwan::kSimReady;
  return DecodeCMError(kxwan::ScopedText(answer.text.c_str()));
}

long GetSIMPINLength(CSModem* modem) {
  constexpr std::string_view kLockEntry = "(\"SC\",";
  const kxwan::Answer answer = kxwan::Exchange(modem, "AT+CPWD=?\r");
  if (!answer.IsOk()) return 0;

  const std::string_view text = answer.text;
  const size_t entry = text.find(kLockEntry);
  if (entry == std::string_view::npos) return 0;
  const std::string_view length = text.substr(entry + kLockEntry.size());
  const size_t end = length.find(')');
  if (end == std::string_view::npos) return 0;
  return std::max<long>(kxwan::ToInt(length.substr(0, end)), kShortestMaximum);
}
