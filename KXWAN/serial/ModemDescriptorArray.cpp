#include <KXWAN/serial/ModemDescriptorArray.h>

#include <algorithm>
#include <cstring>

namespace {

constexpr int32_t kGrowth = 10;

char* CopyOf(const char* text) {
  if (text == nullptr) return nullptr;
  const size_t size = std::strlen(text) + 1;
  return static_cast<char*>(std::memcpy(new char[size], text, size));
}

}  // namespace

ModemDescriptorArray::ModemDescriptorArray()
    : entries(new ModemDescriptor[kGrowth]), count(0), capacity(kGrowth) {}

ModemDescriptorArray::~ModemDescriptorArray() {
  while (count > 0) {
    --count;
    delete[] entries[count].name;
    delete[] entries[count].path;
  }
  delete[] entries;
}

int ModemDescriptorArray::Add(const char* name, const char* path) {
  if (count == capacity) {
    capacity += kGrowth;
    ModemDescriptor* larger = new ModemDescriptor[static_cast<size_t>(capacity)];
    std::copy_n(entries, count, larger);
    delete[] entries;
    entries = larger;
  }
  entries[count] = {CopyOf(name), CopyOf(path)};
  ++count;
  return 1;
}

char* ModemDescriptorArray::GetNameAtIndex(int index) const {
  return index >= 1 && index <= count ? entries[index - 1].name : nullptr;
}

char* ModemDescriptorArray::GetPathAtIndex(int index) const {
  return index >= 1 && index <= count ? entries[index - 1].path : nullptr;
}
