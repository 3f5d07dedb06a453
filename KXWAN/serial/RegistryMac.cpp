#include <KXWAN/serial/RegistryPrivate.h>

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>

namespace kxwan {
namespace {

CFStringRef CreateString(const char* text) {
  return CFStringCreateWithCString(kCFAllocatorDefault, text, kCFStringEncodingASCII);
}

class IOKitRegistry final : public Registry {
 public:
  int IOMasterPort(Object bootstrapPort, Object* masterPort) override {
    return ::IOMasterPort(bootstrapPort, masterPort);
  }

  void* IOServiceMatching(const char* serviceClass) override {
    return ::IOServiceMatching(serviceClass);
  }

  void CFDictionarySetValue(void* dictionary, const char* key, const char* value) override {
    CFStringRef keyString = CreateString(key);
    CFStringRef valueString = CreateString(value);
    ::CFDictionarySetValue(static_cast<CFMutableDictionaryRef>(dictionary), keyString, valueString);
    ::CFRelease(keyString);
    ::CFRelease(valueString);
  }

  int IOServiceGetMatchingServices(Object masterPort, void* dictionary, Object* iterator) override {
    return ::IOServiceGetMatchingServices(masterPort, static_cast<CFDictionaryRef>(dictionary),
                                          iterator);
  }

  Object IOIteratorNext(Object iterator) override { return ::IOIteratorNext(iterator); }

  void IOObjectRelease(Object object) override { ::IOObjectRelease(object); }

  const void* IORegistryEntryCreateCFProperty(Object service, const char* key) override {
    CFStringRef keyString = CreateString(key);
    const void* property =
        ::IORegistryEntryCreateCFProperty(service, keyString, kCFAllocatorDefault, 0);
    ::CFRelease(keyString);
    return property;
  }

  void CFRelease(const void* text) override { ::CFRelease(text); }

  bool CFStringGetCString(const void* text, char* buffer, long size) override {
    if (CFGetTypeID(text) != CFStringGetTypeID()) return false;
    return ::CFStringGetCString(static_cast<CFStringRef>(text), buffer, size,
                                kCFStringEncodingASCII);
  }
};

}  // namespace

Registry& SystemRegistry() {
  static IOKitRegistry registry;
  return registry;
}

}  // namespace kxwan
