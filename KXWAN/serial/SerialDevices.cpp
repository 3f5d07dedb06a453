#include <KXWAN/serial/KxSerial.h>
#include <KXWAN/serial/RegistryPrivate.h>

#include <cstdio>

namespace kxwan {
namespace {

Registry* g_standIn = nullptr;

// Stores the property's text; without the property the buffer stays as it is, which is no failure.
bool CopyProperty(Registry::Object service, const char* key, char* buffer, long size) {
  Registry& registry = CurrentRegistry();
  const void* text = registry.IORegistryEntryCreateCFProperty(service, key);
  if (text == nullptr) return true;
  const bool converted = registry.CFStringGetCString(text, buffer, size);
  registry.CFRelease(text);
  return converted;
}

}  // namespace

Registry& CurrentRegistry() { return g_standIn != nullptr ? *g_standIn : SystemRegistry(); }

void UseRegistry(Registry* standIn) { g_standIn = standIn; }

}  // namespace kxwan

// Deliberate: only the last call decides. What fails before it is reported and the search goes on.
int KxSerial::FindSerialDevices(unsigned int* iterator) {
  kxwan::Registry& registry = kxwan::CurrentRegistry();
  kxwan::Registry::Object masterPort = 0;
  int error = registry.IOMasterPort(0, &masterPort);
  if (error != 0) std::fprintf(stderr, "IOMasterPort error returned %d\n", error);

  void* dictionary = registry.IOServiceMatching("IOSerialBSDClient");
  if (dictionary == nullptr) {
    std::fprintf(stderr, "IOServiceMatching returned a NULL dictionary.\n");
  } else {
    registry.CFDictionarySetValue(dictionary, "IOSerialBSDClientType", "IOSerialStream");
  }

  error = registry.IOServiceGetMatchingServices(masterPort, dictionary, iterator);
  if (error == 0) return 0;
  std::fprintf(stderr, "IOServiceGetMatchingServices returned %d\n", error);
  return 1;
}

ModemDescriptorArray* KxSerial::GetSerialDeviceData(unsigned int iterator) {
  kxwan::Registry& registry = kxwan::CurrentRegistry();
  ModemDescriptorArray* devices = nullptr;
  bool named = true;
  while (named) {
    const kxwan::Registry::Object service = registry.IOIteratorNext(iterator);
    if (service == 0) break;
    char name[128] = "";
    char path[512] = "";
    named = kxwan::CopyProperty(service, "IOTTYDevice", name, sizeof name - 1);
    kxwan::CopyProperty(service, "IOCalloutDevice", path, sizeof path - 1);
    if (devices == nullptr) devices = new ModemDescriptorArray;
    devices->Add(name, path);
    registry.IOObjectRelease(service);
    // Deliberate: a name that does not convert is listed and ends the list.
  }
  return devices;
}

int KxSerial::GetInstalledSerialDevices(ModemDescriptorArray** out) {
  unsigned int iterator = 0;
  if (FindSerialDevices(&iterator) != 0) return 0;
  *out = GetSerialDeviceData(iterator);
  kxwan::CurrentRegistry().IOObjectRelease(iterator);
  return *out != nullptr ? 1 : 0;
}
