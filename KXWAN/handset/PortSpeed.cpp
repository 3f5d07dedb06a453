#include <KXWAN/handset/PortSpeed.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/modem/ResultCode.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

using kxwan::ScopedText;

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
  return *std::find_if(std::begin(kChoices), std::end(kChoices), [&](const SpeedChoice& row) {
    return (platform & row.platform) == row.platform &&
           (row.current == kAnySpeed || row.current == current);
  });
}

bool SetPortSpeed(CSModem* modem, unsigned long speed) {
  return modem->m_pSerial->SetDataFormat(speed, -1, -1, -1) != 0;
}

bool Answers(CSModem* modem) {
  int result = kxwan::kResultTimeout;
  ScopedText reply;
  return modem->SendCommandGetResponse("ATE0V1\r", result, reply);
}

bool TakesCommand(CSModem* modem, const char* command) {
  int result = kxwan::kResultTimeout;
  ScopedText reply;
  return modem->SendCommandGetResponse(command, result, reply) && result == kxwan::kResultOk;
}

bool MoveTo(CSModem* modem, unsigned long newSpeed, unsigned long currentSpeed,
            const CString& iprReply) {
  char digits[24];
  std::snprintf(digits, sizeof digits, "%ld", static_cast<long>(newSpeed));
  char command[40];
  std::snprintf(command, sizeof command, "AT+IPR=%s\r", digits);
  if (!SetPortSpeed(modem, newSpeed)) {
    return false;
  }
  if (Answers(modem)) {
    return true;
  }
  // Deliberate: the digits are looked for as they stand. A list that gives a range and not the
  // speed itself does not allow it.
  return kxwan::Contains(iprReply, digits) && SetPortSpeed(modem, currentSpeed) &&
         TakesCommand(modem, command) && SetPortSpeed(modem, newSpeed) && Answers(modem);
}

}  // namespace

bool DetectModemBaudRate(CSModem* modem, CHandsetPlatform platform, unsigned long& baudRate) {
  const SpeedChoice& choice = FindChoice(platform, baudRate);
  if (choice.candidates[0] == kNone) {
    return true;
  }
  int result = kxwan::kResultTimeout;
  ScopedText iprReply;
  if (!modem->SendCommandGetResponse("AT+IPR=?\r", result, iprReply)) {
    return true;
  }
  for (unsigned long candidate : choice.candidates) {
    if (candidate != kNone && IsPortSpeedSupported(modem, candidate, baudRate, iprReply)) {
      baudRate = candidate;
      return true;
    }
  }
  return true;
}

bool IsPortSpeedSupported(CSModem* modem, unsigned long newSpeed, unsigned long currentSpeed,
                          CString& iprReply) {
  if (newSpeed == currentSpeed || MoveTo(modem, newSpeed, currentSpeed, iprReply)) {
    return true;
  }
  SetPortSpeed(modem, currentSpeed);
  return false;
}
