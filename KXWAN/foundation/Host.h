#pragma once

#include <KXWAN/foundation/Export.h>

// What a desktop host would offer. This library has neither a settings store nor a user interface,
// so these give a fixed answer.

// Gives defaultValue whatever the key.
KXWAN_API int GetCustomSetting(const char* key, int defaultValue);

// Shows nothing and gives 1.
KXWAN_API int AfxMessageBox(const char* text);
