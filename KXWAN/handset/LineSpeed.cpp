#include <KXWAN/handset/LineSpeed.h>

#include <KXWAN/foundation/TablePrivate.h>
#include <KXWAN/handset/SpeedSearchPrivate.h>
#include <KXWAN/modem/EnginePrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>

#include <iterator>
#include <string>

namespace kxwan {
namespace {

constexpr unsigned long kAnswerMs = 1500;

// False when the device refused. Silence is no refusal: some devices answer at the new speed.
bool TellSpeed(CSModem* modem, unsigned long speed) {
  const std::string command = Formatted("AT+IPR=%lu\r", speed);
  const Answer answer = ExchangeOnce(modem, command.c_str(), kAnswerMs);
  return answer.IsOk() || answer.result == kResultTimeout;
}

// A speed that only the device knows would lose it, and so would an old one that cannot be set
// again: a tty may have a number of its own.
bool PortKnows(CSModem* modem, unsigned long newSpeed, unsigned long oldSpeed) {
  if (!SetPortSpeed(modem, oldSpeed)) return false;
  const bool known = SetPortSpeed(modem, newSpeed);
  return SetPortSpeed(modem, oldSpeed) && known;
}

// A device may need a moment before it listens at its new speed.
bool AnswersSoon(CSModem* modem, unsigned long speed) {
  constexpr Seconds kLastAnswerTook = .2;
  constexpr Seconds kLongest = 10;
  Conversation& conversation = ConversationOf(modem);
  return conversation.SetSpeed(speed) &&
         ConfirmSpeed(conversation, kLastAnswerTook, conversation.RefusesRegisters(),
                      conversation.Port().Now() + kLongest);
}

// The device may have heard of the new speed or not: it is told at that one, and not waited for.
void GoBack(CSModem* modem, unsigned long speed) {
  constexpr Seconds kAnswer = .3;
  Conversation& conversation = ConversationOf(modem);
  if (conversation.Send(Formatted("AT+IPR=%lu\r", speed))) conversation.AwaitResult(kAnswer);
  conversation.SetSpeed(speed);
}

}  // namespace

bool FindLineSpeed(CSModem* modem, unsigned long& speed) {
  return SearchSpeed(ConversationOf(modem), speed);
}

bool ChangeLineSpeed(CSModem* modem, unsigned long newSpeed) {
  unsigned long oldSpeed = 0;
  if (modem->m_pSerial->GetDataFormat(&oldSpeed) == 0) return false;
  if (newSpeed == oldSpeed) return true;
  if (!PortKnows(modem, newSpeed, oldSpeed) || !TellSpeed(modem, newSpeed)) return false;
  if (AnswersSoon(modem, newSpeed)) return true;
  GoBack(modem, oldSpeed);
  return false;
}

}  // namespace kxwan

using kxwan::Answer;
using kxwan::Exchange;
using kxwan::SetPortSpeed;

namespace {

constexpr unsigned long kNone = 0;
constexpr unsigned long kAnySpeed = 0;

// Which speeds are worth trying.
struct SpeedChoice {
  CHandsetPlatform platform;  // all of these bits; 0 fits any
  unsigned long current = kAnySpeed;
  unsigned long candidates[2] = {kNone, kNone};  // in the order tried
};

// The first row that fits wins.
// Deliberate: a device with GPRS alone goes no further than 57600, except from 9600, from where it
// is tried at 115200 and at nothing else.
constexpr SpeedChoice kChoices[] = {
    {.platform = PLATFORM_1XRTT, .candidates = {230400, 115200}},
    {.platform = PLATFORM_GPRS | PLATFORM_EDGE, .candidates = {230400, 115200}},
    {.platform = PLATFORM_GPRS, .current = 9600, .candidates = {115200}},
    {.platform = PLATFORM_GPRS, .candidates = {57600}},
    {.platform = 0},
};
static_assert(std::rbegin(kChoices)->platform == 0, "the last row must fit any platform");

const SpeedChoice& FindChoice(CHandsetPlatform platform, unsigned long current) {
  return kxwan::FirstRow(kChoices, [&](const SpeedChoice& row) {
    return (platform & row.platform) == row.platform &&
           (row.current == kAnySpeed || row.current == current);
  });
}

bool Answers(CSModem* modem) { return Exchange(modem, "ATE0V1\r").Came(); }

bool MoveTo(CSModem* modem, unsigned long newSpeed, unsigned long currentSpeed,
            const char* iprReply) {
  if (!SetPortSpeed(modem, newSpeed)) return false;
  if (Answers(modem)) return true;
  const std::string digits = kxwan::Formatted("%ld", static_cast<long>(newSpeed));
  const std::string command = kxwan::Formatted("AT+IPR=%s\r", digits.c_str());
  // Deliberate: the digits are looked for as they stand. A list that gives a range and not the
  // speed itself does not allow it.
  return kxwan::Contains(iprReply, digits.c_str()) && SetPortSpeed(modem, currentSpeed) &&
         kxwan::Accepts(modem, command.c_str()) && SetPortSpeed(modem, newSpeed) && Answers(modem);
}

bool IsSupported(CSModem* modem, unsigned long newSpeed, unsigned long currentSpeed,
                 const char* iprReply) {
  if (newSpeed == currentSpeed || MoveTo(modem, newSpeed, currentSpeed, iprReply)) return true;
  SetPortSpeed(modem, currentSpeed);
  return false;
}

}  // namespace

bool DetectModemBaudRate(CSModem* modem, CHandsetPlatform platform, unsigned long& baudRate) {
  const SpeedChoice& choice = FindChoice(platform, baudRate);
  if (choice.candidates[0] == kNone) return true;
  const Answer speeds = Exchange(modem, "AT+IPR=?\r");
  if (!speeds.Came()) return true;
  for (unsigned long candidate : choice.candidates) {
    if (candidate != kNone && IsSupported(modem, candidate, baudRate, speeds.text.c_str())) {
      baudRate = candidate;
      return true;
    }
  }
  return true;
}

bool IsPortSpeedSupported(CSModem* modem, unsigned long newSpeed, unsigned long currentSpeed,
                          CString& iprReply) {
  return IsSupported(modem, newSpeed, currentSpeed, iprReply.String());
}
