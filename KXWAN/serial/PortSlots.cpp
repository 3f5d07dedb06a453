#include <KXWAN/serial/PortSlots.h>

#include <KXWAN/foundation/DebugLog.h>
#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/serial/KxSerial.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <mutex>

kxwan::PortSlot portList[6];
int32_t nextPortID = -1;

namespace {

std::mutex g_guard;

template <typename Test>
kxwan::PortSlot* FindSlot(Test test) {
  auto slot = std::find_if(std::begin(portList), std::end(portList), test);
  return slot == std::end(portList) ? nullptr : slot;
}

// Compares what a slot can hold, so that a longer path is noticed too.
bool HoldsPath(const kxwan::PortSlot& slot, const char* path) {
  return slot.id != 0 && std::strncmp(slot.path, path, sizeof slot.path - 1) == 0;
}

}  // namespace

uint32_t KxSerial::AllocatePortID(const char* path) {
  const std::lock_guard<std::mutex> lock(g_guard);
  if (nextPortID == -1) {
    nextPortID = 0x103;
    std::fill(std::begin(portList), std::end(portList), kxwan::PortSlot{});
  }
  if (FindSlot([&](const kxwan::PortSlot& slot) { return HoldsPath(slot, path); }) != nullptr) {
    KXOutputDebug("KxSerial::AllocatePortID() - port %s is already open\n",
                  GetDebugDevicePath(path));
    return kxwan::kNoPortID;
  }
  kxwan::PortSlot* slot = FindSlot([](const kxwan::PortSlot& each) { return each.id == 0; });
  if (slot == nullptr) {
    KXOutputDebug("KxSerial::AllocatePortID() - no port slots available\n");
    return kxwan::kNoPortID;
  }
  slot->id = static_cast<uint32_t>(++nextPortID);
  kxwan::CopyText(slot->path, sizeof slot->path, path);
  KXOutputDebug("KxSerial::AllocatePortID() ID:0x%X, path:%s\n", slot->id,
                GetDebugDevicePath(path));
  return slot->id;
}

void KxSerial::DeallocatePortID(uint32_t id) {
  const std::lock_guard<std::mutex> lock(g_guard);
  kxwan::PortSlot* slot =
      FindSlot([&](const kxwan::PortSlot& each) { return each.id != 0 && each.id == id; });
  if (slot == nullptr) {
    KXOutputDebug("KxSerial::DeallocatePortID() - ID:0x%X is not open\n", id);
    return;
  }
  KXOutputDebug("KxSerial::DeallocatePortID() ID:0x%X, path:%s\n", id,
                GetDebugDevicePath(slot->path));
  slot->id = 0;
  slot->path[0] = '\0';
}
