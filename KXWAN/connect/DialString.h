#pragma once

#include <KXWAN/foundation/Export.h>

// Writes the number to dial for a packet-data call: "*99#", or "*99***2#" and "*99***3#", by the
// manufacturer and model texts alone. The short number is copied bounded by length, without a NUL
// where there is no room for one; the long one is written without regard to length. Callers supply
// nine bytes or more, or use kxwan::DialNumber.
KXWAN_API void GetGPRSDialedNumber(const char* manufacturer, const char* model, char* dialString,
                                   int length);

// Whether the data call must run at 57600 bit/s. The model is not read.
KXWAN_API bool DoesGPRSDeviceRequire57600(const char* manufacturer, const char* model);

namespace kxwan {

// As GetGPRSDialedNumber, but never writes more than size bytes and always ends with a NUL (size 0
// or less: nothing). True when the whole number fitted.
KXWAN_API bool DialNumber(const char* manufacturer, const char* model, char* buffer, int size);

}  // namespace kxwan
