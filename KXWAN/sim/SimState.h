#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/modem/CSModem.h>

namespace kxwan {

// What a card asks for.
enum class SimState {
  kReady,
  kPin,         // its PIN
  kPuk,         // its PUK and a new PIN
  kPin2,        // PIN2; everything but a few settings works without
  kPuk2,        // PUK2, likewise
  kDeviceLock,  // a code that ties the device to a card or a network
  kMissing,
  kBusy,    // starting up; ask again
  kFailed,  // broken, wrong or blocked for good
  kNoAnswer,
  kUnknown,    // the answer says nothing
  kDeviceGone  // the line hung up
};

// Asks with "AT+CMEE=1;+CPIN?" (3GPP TS 27.007 8.3), which leaves numeric error reports switched
// on, and where that says nothing once more with "AT+CPIN?". Understands ordinary replies
// ("+CPIN: SIM PIN") and equipment errors as numbers and in words.
KXWAN_API SimState ReadSimState(CSModem* modem);

// One sentence for a user. A static text.
KXWAN_API const char* DescribeSimState(SimState state);

}  // namespace kxwan
