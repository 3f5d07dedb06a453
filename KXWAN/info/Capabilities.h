#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/info/ModemInfo.h>
#include <KXWAN/modem/CSModem.h>

// Names the device's data technology in info->szCapabilities, such as "1xRTT Digital Data" or "GPRS
// Data", and its class in dwDeviceFlags and bNonCDMA. Sends "AT+GCAP\r" (V.250 6.1.9), then what
// the answer calls for; a GSM device is also asked for its SIM ("AT+CMEE=1\r", "AT+CPIN?\r",
// "AT+CMEE=0\r"). Gives whether dwDeviceFlags is not 0 at the end: false for CDMA and for unknown.
// dwDeviceFlags and szCapabilities are not cleared first; GetModemData does that.
KXWAN_API bool GetCapabilitiesKey(CSModem* modem, ModemInfo* info);

// Tells GSM, GPRS and EDGE apart: "AT+CGATT=?\r" (3GPP TS 27.007 10.1.9), and behind it
// "AT+CGQMIN=?\r" and "AT+CGEQMIN=?\r". Sets bNonCDMA. A key that stands in szCapabilities is kept
// when the device does not attach.
KXWAN_API void GSMCapabilities(CSModem* modem, ModemInfo* info);

// Names a device without a known capability by its pages ("ATI3\r", "ATI0\r") or by its attach test
// ("AT+CGATT=?\r"). Leaves the record untouched when neither tells.
KXWAN_API void SpecialCaseCapabilities(CSModem* modem, ModemInfo* info);
