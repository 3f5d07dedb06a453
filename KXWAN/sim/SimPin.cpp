#include <KXWAN/sim/SimPin.h>

#include <KXWAN/foundation/Host.h>
#include <KXWAN/foundation/TablePrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>
#include <KXWAN/sim/SecretPrivate.h>
#include <KXWAN/sim/SimCodes.h>

#include <span>
#include <string>

namespace {

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
