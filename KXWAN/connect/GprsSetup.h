#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/modem/CSModem.h>
#include <KXWAN/modem/KXModemProperties.h>

// Attaches a GPRS, EDGE or UMTS device to the packet service and defines the context that carries
// the access point name (3GPP TS 27.007 10.1). Sends "AT+CGATT?", where that is not attached
// "AT+CGATT=1" (up to 15 s an attempt), then "AT+CGDCONT=", and 500 ms later the quality-of-service
// command that the manufacturer's devices want ("AT+CGQMIN=", "AT+CGEQMIN=" with "+CGQREQ=",
// "+CGEQREQ="), "AT+NWHFUN=0" for Novatel, or none.
//
// A null or empty apn gives true and sends nothing. An apn goes into the command as it stands;
// kxwan::IsApn tells whether it can be one. False leaves kNotAnswered, kAttachFailed or
// kContextRefused in the last-error cell, and an attach or a context already made is not undone.
// An attach leaves modem->m_dwResponseTimeout at 1500.
KXWAN_API bool SetPhoneInGPRSMode(CSModem* modem, KXModemProperties* properties, const char* apn);

namespace kxwan {

// Whether the text can be an access point name: 1 to 100 characters, printable ASCII, no double
// quote. null is none.
KXWAN_API bool IsApn(const char* text);

}  // namespace kxwan
