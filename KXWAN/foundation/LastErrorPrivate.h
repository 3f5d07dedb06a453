#pragma once

#include <KXWAN/foundation/LastError.h>

namespace kxwan {

// Records the code and gives false, so that the two cannot part: return Fail(kAttachFailed);
inline bool Fail(unsigned long code) {
  SetModemError(code);
  return false;
}

}  // namespace kxwan
