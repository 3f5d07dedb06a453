#include <KXWAN/foundation/LastError.h>

uint32_t g_dwModemError = 0;

void SetModemError(unsigned long code) {
  __atomic_store_n(&g_dwModemError, static_cast<uint32_t>(code), __ATOMIC_RELAXED);
}

unsigned long GetLastModemError() {
  return __atomic_exchange_n(&g_dwModemError, 0, __ATOMIC_RELAXED);
}
