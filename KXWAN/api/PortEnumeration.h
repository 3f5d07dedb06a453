#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/serial/ModemDescriptorArray.h>

#include <cstdint>

// Walks the machine's serial devices. There is one enumeration for the whole process: one thread,
// one walk at a time.

// Starts anew and gives the first device: the name of its tty and the path to open. False when
// there is none, or the devices could not be listed; both buffers are then untouched.
//
// As with strncpy, a text of nameSize (pathSize) characters or more is not NUL-terminated and the
// rest of a longer buffer is filled with NULs: pass buffers larger than the longest name.
KXWAN_API bool KXModemFindFirst(char* name, int nameSize, char* path, int pathSize);

// Gives the next device; false behind the last one and when no enumeration is under way.
KXWAN_API bool KXModemFindNext(char* name, int nameSize, char* path, int pathSize);

// Whether type occurs in port, in either case.
KXWAN_API bool KXModemPortOfType(const char* port, const char* type);

// Whether port, in lower case, is name. A name with capital letters never matches.
KXWAN_API bool KXModemPortMatch(const char* port, const char* name);

// The enumeration under way: its list, owned here (null: none), and the number, from 1, of the
// device that is given next.
extern KXWAN_API ModemDescriptorArray* modemList;
extern KXWAN_API int32_t g_nModemIndex;
