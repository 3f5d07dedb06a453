#pragma once

#include <KXWAN/foundation/Export.h>

#include <cstdint>

// One serial device: the base name of its tty and the path to open. Either may be null.
struct ModemDescriptor {
  char* name;
  char* path;
};

// A growing list of serial devices. It owns its texts; whoever receives the list deletes it.
class KXWAN_API ModemDescriptorArray {
 public:
  ModemDescriptorArray();
  ~ModemDescriptorArray();
  ModemDescriptorArray(const ModemDescriptorArray&) = delete;
  ModemDescriptorArray& operator=(const ModemDescriptorArray&) = delete;

  // Appends copies of both texts; a null stays null. Always gives 1.
  int Add(const char* name, const char* path);

  // Deliberate: the index counts from 1, as ports are counted for a user. Any index that is not 1
  // to count gives null. The texts stay the list's.
  char* GetNameAtIndex(int index) const;
  char* GetPathAtIndex(int index) const;

  ModemDescriptor* entries;
  int32_t count;
  int32_t capacity;
};
