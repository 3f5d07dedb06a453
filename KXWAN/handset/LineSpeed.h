#pragma once

#include <KXWAN/foundation/CString.h>
#include <KXWAN/foundation/Export.h>
#include <KXWAN/handset/CHandsetPlatform.h>
#include <KXWAN/modem/CSModem.h>

namespace kxwan {

// Finds the line speed, in bits per second, at which the device answers: the port's present speed,
// then 115200, 9600, 57600, 19200, 230400, 38400, 460800 and 921600. Each is asked another
// question, "ATE0V1" with four registers whose values every device shares ("ATE0V1S3?S4?S5?S3?\r";
// V.250 6.2), so that a late answer tells which speed it answers; where registers are refused,
// AT+GCAP, AT+CMEE?, AT+CSQ and AT are asked. A first round gives each speed 0.22 s; a second one
// gives the present speed and the two commonest 2.1 s, and every speed 2.3 s when bytes of another
// speed came. A silent line is given up after 10 s. The device is left without echo and with
// results in words. True leaves the port at speed. False leaves speed untouched and the port as it
// was.
KXWAN_API bool FindLineSpeed(CSModem* modem, unsigned long& speed);

// Moves device and port to another speed with "AT+IPR=" (V.250 6.2.10) and checks with the same
// questions that the device answers there. False leaves the port at the speed it had: the system or
// the device does not take the speed, or the device did not answer, in which case it was told to go
// back.
KXWAN_API bool ChangeLineSpeed(CSModem* modem, unsigned long newSpeed);

}  // namespace kxwan

// Moves device and port to the fastest line speed worth trying for the platform. baudRate holds the
// speed in use, in bits per second, on entry and on return. Sends "AT+IPR=?\r" (V.250 6.2.10), then
// what IsPortSpeedSupported sends for each candidate. A device without GPRS and 1xRTT is sent
// nothing. Always true.
KXWAN_API bool DetectModemBaudRate(CSModem* modem, CHandsetPlatform platform,
                                   unsigned long& baudRate);

// Tries to move device and port from currentSpeed to newSpeed: "ATE0V1\r" at the new speed, then
// "AT+IPR=" with the speed at the current one, provided that iprReply, the answer to "AT+IPR=?\r",
// holds the speed's digits, and the check again. False leaves the port at currentSpeed; a device
// that took "AT+IPR=" and did not answer afterwards may stand at newSpeed.
KXWAN_API bool IsPortSpeedSupported(CSModem* modem, unsigned long newSpeed,
                                    unsigned long currentSpeed, CString& iprReply);
