#pragma once

#include <KXWAN/foundation/Export.h>

#include <cstdint>

namespace kxwan {

// The identifier of a port without a slot.
constexpr uint32_t kNoPortID = 0xFFFFFFFF;

// One port that is open through any KxSerial of the process.
struct PortSlot {
  uint32_t id;     // 0: the slot is free
  char path[256];  // as given to Open, cut to 255 characters
};

}  // namespace kxwan

// The process-wide record of open ports, for the log and not a lock: a port beyond the sixth, or
// one that is open already, works without a slot. Ports may be opened and closed on several
// threads; who looks at the table itself does so while none of them is.
extern KXWAN_API kxwan::PortSlot portList[6];

// The identifier given out last; -1 before the first, which is 0x104. Never given out twice.
extern KXWAN_API int32_t nextPortID;
