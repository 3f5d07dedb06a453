#include <KXWAN/foundation/LastError.h>

uint32_t g_dwModemError = 0;

void SetModemError(unsigned long code) { g_dwModemError = static_cast<uint32_t>(code); }

unsigned long GetLastModemError() {
  const uint32_t code = g_dwModemError;
  g_dwModemError = 0;
  return code;
}
