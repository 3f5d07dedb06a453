#include <KXWAN/sim/PinEntry.h>

#include <KXWAN/foundation/TablePrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>
#include <KXWAN/sim/SecretPrivate.h>
#include <KXWAN/sim/SimState.h>

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

// Exchanges that did not come to an answer or its absence.
struct UnsentRow {
  int result;
  PinOutcome outcome;
};

constexpr UnsentRow kUnsent[] = {
    {kResultInDoubt, PinOutcome::kInDoubt},
    {kResultNotSent, PinOutcome::kLineBlocked},
    {kResultDeviceGone, PinOutcome::kDeviceGone},
};

constexpr CodeText<PinOutcome> kOutcomeTexts[] = {
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
    {PinOutcome::kInDoubt,
     "Nothing was sent: the device still owes answers to earlier commands, so that its answer "
     "could "
     "not have been told from those. Try again in a while."},
    {PinOutcome::kLineBlocked,
     "The line took nothing, or not all of it, so that the entry cannot have counted. Is the "
     "device "
     "on, and its flow control (RTS/CTS) as the port's?"},
    {PinOutcome::kDeviceGone, "The device has left: it was unplugged, or the line hung up."},
};

bool IsDigits(const char* text, size_t shortest, size_t longest) {
  const std::string_view digits = text != nullptr ? text : "";
  return shortest <= digits.size() && digits.size() <= longest && IsNumber(digits);
}

bool SaysWrongPassword(std::string_view error) {
  return error == "16" || ContainsNoCase(error, "incorrect password");
}

// Without an answer, only a state that the entry must have led to tells what came of it.
PinOutcome OutcomeOfState(SimState state) {
  if (state == SimState::kReady) return PinOutcome::kAccepted;
  return state == SimState::kPuk ? PinOutcome::kPukNeeded : PinOutcome::kNoAnswer;
}

PinOutcome Enter(CSModem* modem, const char* command, unsigned long timeoutMs,
                 PinOutcome RefusalRow::*refusal) {
  const Answer answer = ExchangeSurely(modem, command, timeoutMs);
  if (answer.IsOk()) return PinOutcome::kAccepted;
  const UnsentRow* unsent =
      FindRow(kUnsent, [&](const UnsentRow& each) { return each.result == answer.result; });
  if (unsent != nullptr) return unsent->outcome;

  const SimState state = ReadSimState(modem);
  if (!answer.Came()) return OutcomeOfState(state);
  const RefusalRow* row =
      FindRow(kRefusals, [state](const RefusalRow& each) { return each.state == state; });
  if (row != nullptr) return row->*refusal;
  return SaysWrongPassword(answer.text) ? PinOutcome::kWrong : PinOutcome::kNotPossible;
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
  return TextOf(kOutcomeTexts, outcome, "This is no outcome of an entry.");
}

bool IsPin(const char* text) { return IsDigits(text, 4, 8); }

bool IsPuk(const char* text) { return IsDigits(text, 8, 8); }

}  // namespace kxwan
