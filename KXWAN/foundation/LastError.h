#pragma once

#include <KXWAN/foundation/Export.h>

#include <cstdint>

// The code that an operation recorded last, 0 for none. One cell for the whole process: where
// several threads work, another one's code may be found there. A program with threads uses the
// functions, which read and write it as a whole.
extern KXWAN_API uint32_t g_dwModemError;

// Records a code; only the lower 32 bits are kept.
KXWAN_API void SetModemError(unsigned long code);

// Gives the recorded code and clears it in one step: a second call in a row gives 0.
KXWAN_API unsigned long GetLastModemError();
