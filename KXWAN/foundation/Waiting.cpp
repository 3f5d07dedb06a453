#include <KXWAN/foundation/Waiting.h>

#include <unistd.h>

#include <cstdint>

int WaitMilliSecond(unsigned long ms) {
  // Deliberate: the product wraps in 32 bits.
  return usleep(static_cast<uint32_t>(ms) * UINT32_C(1000));
}
