#include <KXWAN/handset/LineSpeed.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/modem/ResultCode.h>
#include <KXWAN/modem/SingleExchange.h>

#include <cstdio>

namespace kxwan {
namespace {

// The commonest first: data cards, then phones on a cable.
constexpr unsigned long kSearchOrder[] = {115200, 9600,  57600,  19200,
                                          230400, 38400, 460800, 921600};

constexpr unsigned long kAnswerMs = 300;
constexpr unsigned long kChangeMs = 1500;

// A device may need a moment before it listens at its new speed.
constexpr int kChecks = 3;

bool SetPortSpeed(CSModem* modem, unsigned long speed) {
  return modem->m_pSerial->SetDataFormat(speed, -1, -1, -1) != 0;
}

bool Answers(CSModem* modem) {
  int result = kResultTimeout;
  ScopedText reply;
  return SendOnce(modem, "ATE0V1\r", kAnswerMs, result, reply);
}

bool AnswersSoon(CSModem* modem) {
  for (int check = 0; check < kChecks; ++check) {
    if (Answers(modem)) {
      return true;
    }
  }
  return false;
}

// False when the device refused. Silence is no refusal: some devices answer at the new speed.
bool TellSpeed(CSModem* modem, unsigned long speed, unsigned long timeoutMs) {
  char command[40];
  std::snprintf(command, sizeof command, "AT+IPR=%lu\r", speed);
  int result = kResultTimeout;
  ScopedText reply;
  return !SendOnce(modem, command, timeoutMs, result, reply) || result == kResultOk;
}

// A speed that only the device knows would lose it.
bool PortKnows(CSModem* modem, unsigned long newSpeed, unsigned long oldSpeed) {
  const bool known = SetPortSpeed(modem, newSpeed);
  return SetPortSpeed(modem, oldSpeed) && known;
}

}  // namespace

bool FindLineSpeed(CSModem* modem, unsigned long& speed) {
  unsigned long before = 0;
  const bool hadSpeed = modem->m_pSerial->GetDataFormat(&before) != 0;
  for (unsigned long candidate : kSearchOrder) {
    // The second exchange tells the device's speed from one at which only a late answer to the
    // speed before came in.
    if (SetPortSpeed(modem, candidate) && Answers(modem) && Answers(modem)) {
      speed = candidate;
      return true;
    }
  }
  if (hadSpeed) {
    SetPortSpeed(modem, before);
  }
  return false;
}

bool ChangeLineSpeed(CSModem* modem, unsigned long newSpeed) {
  unsigned long oldSpeed = 0;
  if (modem->m_pSerial->GetDataFormat(&oldSpeed) == 0) {
    return false;
  }
  if (newSpeed == oldSpeed) {
    return true;
  }
  if (!PortKnows(modem, newSpeed, oldSpeed) || !TellSpeed(modem, newSpeed, kChangeMs)) {
    return false;
  }
  if (SetPortSpeed(modem, newSpeed) && AnswersSoon(modem)) {
    return true;
  }
  TellSpeed(modem, oldSpeed, kAnswerMs);
  SetPortSpeed(modem, oldSpeed);
  return false;
}

}  // namespace kxwan
