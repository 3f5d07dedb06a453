#include <KXWAN/sim/SimPin.h>

#include <KXWAN/foundation/Host.h>
#include <KXWAN/foundation/TablePrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>
#include <KXWAN/sim/SecretPrivate.h>
#include <KXWAN/sim/SimCodes.h>

#include <algorithm>
#include <span>
#include <string>
#include <string_view>

namespace {

constexpr long kShortestMaximum = 8;  // every card takes a PIN of 8 digits

struct Refusal {
  const char* text;  // the whole response
  long code;
};

constexpr Refusal kPinRefusals[] = {{"12", kxwan::kSimPukRequired},
                                    {"16", kxwan::kSimWrongPassword}};
constexpr Refusal kPukRefusals[] = {{"16", kxwan::kSimPukRejected}, {"12", kxwan::kSimPukRejected}};

long DecodeRefusal(const std::string& response, std::span<const Refusal> refusals) {
  const Refusal* row =
      kxwan::FindRow(refusals, [&](const Refusal& each) { return response == each.text; });
  if (row != nullptr) return row->code;
  AfxMessageBox(("+CME ERROR: " + response).c_str());
  return kxwan::kSimOtherError;
}

// pin is what SaveSIMPIN takes once the entry was accepted.
long Enter(CSModem* modem, const char* command, std::span<const Refusal> refusals, const char* pin,
           bool save) {
  const kxwan::Answer answer = kxwan::Exchange(modem, command);
  // Deliberate: the texts are those of a plain ERROR, for devices that put the number there, and an
  // equipment error is an unexpected answer. Applications tell the two apart by these codes.
  if (answer.result == kxwan::kResultError) return DecodeRefusal(answer.text, refusals);
  if (!answer.IsOk()) return kxwan::kSimNotExchanged;
  return !save || SaveSIMPIN(modem, pin) ? kxwan::kSimReady : kxwan::kSimPinNotSaved;
}

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

long SetPIN(CSModem* modem, const char* pin, signed char savePIN) {
  const kxwan::SecretCommand command("AT+CPIN=\"%s\"\r", pin);
  return Enter(modem, command.String(), kPinRefusals, pin, savePIN != 0);
}

long SetPINPUK(CSModem* modem, const char* puk, const char* newPin, signed char savePIN) {
  const kxwan::SecretCommand command("AT+CPIN=\"%s\",\"%s\"\r", puk, newPin);
  return Enter(modem, command.String(), kPukRefusals, newPin, savePIN != 0);
}

long SetPINOnCard(CSModem* modem, KXDevicePassword* password) {
  return SetPIN(modem, password->szPIN, password->bSavePIN);
}

long SetPINPUKOnCard(CSModem* modem, KXDevicePassword* password) {
  return SetPINPUK(modem, password->szPUK, password->szPIN, password->bSavePIN);
}

bool SaveSIMPIN(CSModem* modem, const char* pin) {
  const kxwan::SecretCommand command("AT+CLCK=\"SC\",0,\"%s\"\r", pin);
  return kxwan::Accepts(modem, command.String());
}
