#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/modem/CSModem.h>

namespace kxwan {

// Which network a device is registered with.
enum class RegistrationDomain {
  kCircuit,  // voice and short messages, "AT+CREG?\r" (3GPP TS 27.007 7.2)
  kPacket    // packet data, "AT+CGREG?\r" (3GPP TS 27.007 10.1.20)
};

// The states of 3GPP TS 27.007 7.2 by their numbers. A number beyond them counts as kUnknown.
enum class RegistrationState {
  kNotRegistered = 0,
  kHome = 1,
  kSearching = 2,
  kDenied = 3,
  kUnknown = 4,
  kRoaming = 5,
  kMessagesOnlyHome = 6,
  kMessagesOnlyRoaming = 7,
  kEmergencyOnly = 8
};

// Reads the registration state. The answer "+CREG: 0,1" counts before lines such as "+CREG: 1",
// which a device sends unasked when its state changes; the last of those counts when there is no
// other. False leaves state untouched: not answered with OK, or no such line.
KXWAN_API bool ReadRegistration(CSModem* modem, RegistrationDomain domain,
                                RegistrationState& state);

// A text for users, such as "registered, roaming".
KXWAN_API const char* RegistrationText(RegistrationState state);

}  // namespace kxwan
