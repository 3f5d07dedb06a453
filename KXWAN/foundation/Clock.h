#pragma once

#include <KXWAN/foundation/Export.h>

// Sleeps for so many milliseconds and gives what the system's sleep call gave (0 when it slept).
// The microseconds are counted in 32 bits: from 4294968 ms on they wrap.
KXWAN_API int WaitMilliSecond(unsigned long ms);
