#include <KXWAN/sim/PinEntry.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/modem/SingleExchange.h>
#include <KXWAN/sim/SecretPrivate.h>
#include <KXWAN/sim/SimCard.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace kxwan {
namespace {

// Why an entry was refused, by the state of the card afterwards.
struct RefusalRow {
  SimState state;
  PinOutcome ofPin;
  PinOutcome ofPuk;
};

constexpr RefusalRow kRefusals[] = {
    {SimState::kPin, PinOutcome::kWrong, PinOutcome::kNotPossible},
    {SimState::kPuk, PinOutcome::kPukNeeded, PinOutcome::kWrong},
    {SimState::kFailed, PinOutcome::kBlocked, PinOutcome::kBlocked},
};

struct OutcomeText {
  PinOutcome outcome;
  const char* text;
};

constexpr OutcomeText kOutcomeTexts[] = {
    {PinOutcome::kAccepted, "Accepted."},
    {PinOutcome::kWrong,
     "Refused, most likely because it is wrong. Make sure of the digits: every try counts."},
    {PinOutcome::kPukNeeded, "The SIM takes no PIN any more: it needs the PUK and a new PIN."},
    {PinOutcome::kBlocked, "The SIM failed or is blocked for good. Only its provider can help."},
    {PinOutcome::kNotPossible,
     "The device did not take it: the SIM is missing or busy, or does not ask for this."},
    {PinOutcome::kNoAnswer,
     "The device did not answer in time, and the try may have counted. Ask for the state of the "
     "SIM before another."},
    {PinOutcome::kNotSent, "Nothing was sent: a PIN has 4 to 8 digits and a PUK has 8."},
};

bool IsDigits(const char* text, size_t shortest, size_t longest) {
  const std::string_view digits = text != nullptr ? text : "";
  return shortest <= digits.size() && digits.size() <= longest &&
         digits.find_first_not_of("0123456789") == digits.npos;
}

bool SaysWrongPassword(const CString& error) {
  return Equals(error, "16") || error.FindNoCase("incorrect password") >= 0;
}

PinOutcome Enter(CSModem* modem, const char* command, unsigned long timeoutMs,
                 PinOutcome RefusalRow::*refusal) {
  ScopedText response;
  int result = kResultTimeout;
  if (!SendOnce(modem, command, timeoutMs, result, response)) return PinOutcome::kNoAnswer;
  if (result == kResultOk) return PinOutcome::kAccepted;

  const SimState state = ReadSimState(modem);
  const auto* row = std::find_if(std::begin(kRefusals), std::end(kRefusals),
                                 [&](const RefusalRow& entry) { return entry.state == state; });
  if (row != std::end(kRefusals)) return row->*refusal;
  return SaysWrongPassword(response) ? PinOutcome::kWrong : PinOutcome::kNotPossible;
}

}  // namespace

PinOutcome EnterPin(CSModem* modem, const char* pin, unsigned long timeoutMs) {
  if (!IsPin(pin)) return PinOutcome::kNotSent;
  const SecretCommand command("AT+CPIN=\"%s\"\r", pin);
  return Enter(modem, command.String(), timeoutMs, &RefusalRow::ofPin);
}

PinOutcome EnterPuk(CSModem* modem, const char* puk, const char* newPin, unsigned long timeoutMs) {
  if (!IsPuk(puk) || !IsPin(newPin)) return PinOutcome::kNotSent;
  const SecretCommand command("AT+CPIN=\"%s\",\"%s\"\r", puk, newPin);
  return Enter(modem, command.String(), timeoutMs, &RefusalRow::ofPuk);
}

const char* DescribePinOutcome(PinOutcome outcome) {
  const auto* row =
      std::find_if(std::begin(kOutcomeTexts), std::end(kOutcomeTexts),
                   [&](const OutcomeText& entry) { return entry.outcome == outcome; });
  return row != std::end(kOutcomeTexts) ? row->text : "This is no outcome of an entry.";
}

bool IsPin(const char* text) { return IsDigits(text, 4, 8); }

bool IsPuk(const char* text) { return IsDigits(text, 8, 8); }

}  // namespace kxwan
