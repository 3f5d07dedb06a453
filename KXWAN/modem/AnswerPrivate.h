#pragma once

#include <KXWAN/modem/ResultCode.h>

#include <string>

namespace kxwan {

// What an exchange ended with.
struct Answer {
  int result = kResultTimeout;
  const char* kind = "";  // "CME" or "CMS" with kResultEquipmentError
  std::string text;       // empty without a final result

  bool Came() const { return result < kResultTimeout || result == kResultEquipmentError; }
  bool IsOk() const { return result == kResultOk; }
};

}  // namespace kxwan
