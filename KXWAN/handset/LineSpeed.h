#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/modem/CSModem.h>

namespace kxwan {

// Finds the line speed, in bits per second, at which the device answers: sends "ATE0V1\r" once per
// speed and waits 300 ms for any final result, at 115200, 9600, 57600, 19200, 230400, 38400, 460800
// and 921600. True leaves the port at speed. False leaves speed untouched and the port as it was: a
// device that needs longer for its answer is not found.
KXWAN_API bool FindLineSpeed(CSModem* modem, unsigned long& speed);

// Moves device and port to another speed with "AT+IPR=" (V.250 6.2.10) and checks that the device
// answers there. False leaves the port at the speed it had: the system or the device does not take
// the speed, or the device did not answer, in which case it was told to go back.
KXWAN_API bool ChangeLineSpeed(CSModem* modem, unsigned long newSpeed);

}  // namespace kxwan
