#include <KXWAN/handset/LineSpeed.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/handset/SpeedSearchPrivate.h>
#include <KXWAN/modem/EnginePrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>

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
