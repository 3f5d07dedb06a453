#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/modem/CSModem.h>

// Puts a CDMA device into its packet-data mode: 1xRTT when oneXMode is true, Quick Net Connect when
// it is false. Sends, for the few models that want it, "AT$QCSCRM=1", "AT+CRM=1" or "AT+CRM=0";
// then "AT$QCMDR=3" or "AT$QCMDR=2;$QCQNC=1"; and when that is refused with ERROR the standard form
// "AT+CRM=...;+CSO=..." (IS-707) and last the Mobile IP setting "AT$QCMIP=". model is the device's
// model text. True when one of the mode commands was accepted; false leaves kNotAnswered or
// kModeRefused in the last-error cell.
KXWAN_API bool SetPhoneIn1XMode(CSModem* modem, const char* model, bool oneXMode);

// Switches Mobile IP on with "AT$QCMIP=2"; with oneXMode false it sends nothing and gives true.
// model is not read. Sets no error code.
KXWAN_API bool SetPhoneIn1XModeForSprint(CSModem* modem, const char* model, bool oneXMode);
