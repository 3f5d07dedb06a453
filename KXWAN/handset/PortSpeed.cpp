#include <KXWAN/handset/PortSpeed.h>

#include <KXWAN/foundation/TablePrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>

#include <iterator>
#include <string>

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
  if (!SetPortSpeed(modem, newSpeed)) {
    return false;
  }
  if (Answers(modem)) {
    return true;
  }
  const std::string digits = kxwan::Formatted("%ld", static_cast<long>(newSpeed));
  const std::string command = kxwan::Formatted("AT+IPR=%s\r", digits.c_str());
  // Deliberate: the digits are looked for as they stand. A list that gives a range and not the
  // speed itself does not allow it.
  return kxwan::Contains(iprReply, digits.c_str()) && SetPortSpeed(modem, currentSpeed) &&
         kxwan::Accepts(modem, command.c_str()) && SetPortSpeed(modem, newSpeed) && Answers(modem);
}

bool IsSupported(CSModem* modem, unsigned long newSpeed, unsigned long currentSpeed,
                 const char* iprReply) {
  if (newSpeed == currentSpeed || MoveTo(modem, newSpeed, currentSpeed, iprReply)) {
    return true;
  }
  SetPortSpeed(modem, currentSpeed);
  return false;
}

}  // namespace

bool DetectModemBaudRate(CSModem* modem, CHandsetPlatform platform, unsigned long& baudRate) {
  const SpeedChoice& choice = FindChoice(platform, baudRate);
  if (choice.candidates[0] == kNone) {
    return true;
  }
  const Answer speeds = Exchange(modem, "AT+IPR=?\r");
  if (!speeds.Came()) {
    return true;
  }
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
