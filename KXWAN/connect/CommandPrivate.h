#pragma once

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/modem/CSModem.h>

namespace kxwan {

// Sends a command whose reply does not matter and gives what the exchange ended with.
inline int ResultOf(CSModem* modem, const char* command) {
  ScopedText reply;
  int result = kResultTimeout;
  return modem->SendCommandGetResponse(command, result, reply) ? result : kResultTimeout;
}

inline bool Accepts(CSModem* modem, const char* command) {
  return ResultOf(modem, command) == kResultOk;
}

}  // namespace kxwan
