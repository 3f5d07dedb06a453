#include <KXWAN/foundation/Waiting.h>

#include <KXWAN/foundation/WaitingPrivate.h>
#include <unistd.h>

#include <cstdint>
#include <thread>

int WaitMilliSecond(unsigned long ms) {
  // Deliberate: the product wraps in 32 bits.
  return usleep(static_cast<uint32_t>(ms) * UINT32_C(1000));
}

void kxwan::WaitFully(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }
