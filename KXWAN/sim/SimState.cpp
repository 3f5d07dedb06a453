#include <KXWAN/sim/SimState.h>

#include <KXWAN/foundation/TablePrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>

#include <iterator>
#include <string_view>

namespace kxwan {
namespace {

struct NumberRow {
  int32_t first;
  int32_t last;
  SimState state;
};

// Equipment errors by number, 3GPP TS 27.007 9.2.
constexpr NumberRow kNumberRows[] = {
    {5, 7, SimState::kDeviceLock},    // PH-SIM and PH-FSIM PIN and PUK
    {10, 10, SimState::kMissing},     // SIM not inserted
    {11, 11, SimState::kPin},         // SIM PIN required
    {12, 12, SimState::kPuk},         // SIM PUK required
    {13, 13, SimState::kFailed},      // SIM failure
    {14, 14, SimState::kBusy},        // SIM busy
    {15, 15, SimState::kFailed},      // SIM wrong
    {17, 17, SimState::kPin2},        // SIM PIN2 required
    {18, 18, SimState::kPuk2},        // SIM PUK2 required
    {40, 47, SimState::kDeviceLock},  // network, provider and corporate personalization
    {262, 262, SimState::kFailed},    // SIM blocked, as several makers number it
};

struct WordRow {
  std::string_view phrase;  // occurs in the answer, in either case; "" fits any
  SimState state;
};

// Replies and equipment errors in words. The first row that fits wins.
constexpr WordRow kWordRows[] = {
    {"PH-", SimState::kDeviceLock},       {"personali", SimState::kDeviceLock},
    {"not inserted", SimState::kMissing}, {"not ready", SimState::kBusy},
    {"SIM busy", SimState::kBusy},        {"SIM failure", SimState::kFailed},
    {"SIM wrong", SimState::kFailed},     {"blocked", SimState::kFailed},
    {"SIM PIN2", SimState::kPin2},        {"SIM PUK2", SimState::kPuk2},
    {"SIM PIN", SimState::kPin},          {"SIM PUK", SimState::kPuk},
    {"READY", SimState::kReady},          {"", SimState::kUnknown},
};
static_assert(std::rbegin(kWordRows)->phrase.empty(), "the last row must fit any answer");

constexpr CodeText<SimState> kStateTexts[] = {
    {SimState::kReady, "The SIM is ready."},
    {SimState::kPin, "The SIM needs its PIN."},
    {SimState::kPuk, "The SIM is blocked: it needs the PUK and a new PIN."},
    {SimState::kPin2, "The SIM can be used; it asks for PIN2."},
    {SimState::kPuk2, "The SIM can be used; it asks for PUK2."},
    {SimState::kDeviceLock, "The device is locked to another SIM or network."},
    {SimState::kMissing, "There is no SIM in the device."},
    {SimState::kBusy, "The SIM is still starting up; ask again in a few seconds."},
    {SimState::kFailed, "The SIM failed, does not fit or is blocked for good."},
    {SimState::kNoAnswer, "The device did not answer when it was asked for the state of its SIM."},
    {SimState::kUnknown, "The device does not tell the state of its SIM."},
    {SimState::kDeviceGone, "The device has left: it was unplugged, or the line hung up."},
};

SimState StateInWords(std::string_view text) {
  const auto fits = [text](const WordRow& row) { return ContainsNoCase(text, row.phrase); };
  return FirstRow(kWordRows, fits).state;
}

SimState StateOfError(std::string_view text) {
  if (!IsNumber(text)) return StateInWords(text);
  const int32_t number = ToInt(text);
  const NumberRow* row = FindRow(kNumberRows, [number](const NumberRow& each) {
    return each.first <= number && number <= each.last;
  });
  return row != nullptr ? row->state : SimState::kUnknown;
}

SimState AskState(CSModem* modem, const char* command) {
  constexpr unsigned long kTimeoutMs = 5000;
  const Answer answer = ExchangeOnce(modem, command, kTimeoutMs);
  if (answer.result == kResultDeviceGone) return SimState::kDeviceGone;
  if (!answer.Came()) return SimState::kNoAnswer;
  if (answer.result == kResultEquipmentError) return StateOfError(answer.text);
  const std::string_view text = TextBehind(answer.text, "+CPIN:");
  return StateInWords(text.substr(0, text.find_first_of("\r\n")));
}

}  // namespace

SimState ReadSimState(CSModem* modem) {
  const SimState state = AskState(modem, "AT+CMEE=1;+CPIN?\r");
  return state == SimState::kUnknown ? AskState(modem, "AT+CPIN?\r") : state;
}

const char* DescribeSimState(SimState state) {
  return TextOf(kStateTexts, state, "This is no state of a SIM.");
}

}  // namespace kxwan
