#pragma once

#include <KXWAN/modem/AnswerPrivate.h>
#include <KXWAN/modem/CSModem.h>

// What the library's own code sends goes through here, and replies arrive as ordinary text.
namespace kxwan {

// CSModem::SendCommandGetResponse.
Answer Exchange(CSModem* modem, const char* command);

// The same, but at once kResultDeviceGone when the device has left.
Answer ExchangeWhileThere(CSModem* modem, const char* command);

// SendOnce.
Answer ExchangeOnce(CSModem* modem, const char* command, unsigned long timeoutMs);

// The same for what must not be mistaken, such as a PIN: kResultTimeout also where what came of it
// is unknown.
Answer ExchangeSurely(CSModem* modem, const char* command, unsigned long timeoutMs);

// Sends a command whose reply does not matter. True when it was answered OK.
bool Accepts(CSModem* modem, const char* command);

// Sets the port's line speed and leaves its framing. False: the system does not know the speed.
bool SetPortSpeed(CSModem* modem, unsigned long speed);

}  // namespace kxwan
