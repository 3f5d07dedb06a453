#pragma once

#include <KXWAN/foundation/CString.h>
#include <KXWAN/foundation/Export.h>
#include <KXWAN/modem/CSModem.h>

// Turns every control character and every byte from 0x80 on into a blank and trims both ends.
KXWAN_API void PrepareResponse(CString& text);

// Acts only on a text that begins and ends with a double quote: takes every quote out of it
// (removeAll not 0) or the outer two.
KXWAN_API void StripQuotesfromResponse(CString& text, signed char removeAll);

// Takes every double quote out of a NUL-terminated text, in place.
KXWAN_API void formatModelKey(char* key);

// Sends the command (complete, with its "\r") and gives the answer in out. With a prefix: what
// stands behind its first occurrence, or everything when it does not occur, cleaned by
// PrepareResponse. Without one (null): the answer as received.
// False with "Error" when the device did not answer OK, false with "Unknown" when it answered OK
// and nothing else. out gets a text of its own: copies of what it held stay as they are.
KXWAN_API bool QueryModem(CSModem* modem, const char* command, const char* prefix, CString& out);

namespace kxwan {

// The value of one named line of an answer: QueryValue(modem, "AT+CSQ\r", "+CSQ:", value) gives
// "15,99" also when a "RING" or a "+CREG: 1" came in between. When no line carries the tag, or tag
// is null, the first line that has no name of its own and is no call progress word is the value.
// False leaves value untouched: not answered with OK, or no such line.
KXWAN_API bool QueryValue(CSModem* modem, const char* command, const char* tag, CString& value);

}  // namespace kxwan
