#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/handset/CHandsetPlatform.h>

// The names of the platform's bits, with ", " between them: "GPRS, EDGE"; "UNKNOWN" when no bit
// with a name is set. The text lies in a static buffer, one for each thread, that every call
// overwrites.
KXWAN_API const char* GetModemProtocolTypeAsString(unsigned long platform);

// The bits that one such name stands for, 0 for any other text. "1xEVDO (Rev-A)" gives both EV-DO
// bits; "QNC" counts as "1xQNC".
KXWAN_API CHandsetPlatform MapDeviceTypeToDeviceFlag(const char* name);
