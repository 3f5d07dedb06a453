#pragma once

namespace kxwan {

// The calls to the system's device registry that discovery makes, under the names that they have on
// macOS. Texts go in as C texts; property texts come out as handles.
class Registry {
 public:
  using Object = unsigned int;  // a port, an iterator or a service; 0 is none

  // The results of these two are 0, or the system's error number.
  virtual int IOMasterPort(Object bootstrapPort, Object* masterPort) = 0;
  // Uses the dictionary up. Stores an iterator, the caller's to release.
  virtual int IOServiceGetMatchingServices(Object masterPort, void* dictionary,
                                           Object* iterator) = 0;

  // Null when there is no such class of services.
  virtual void* IOServiceMatching(const char* serviceClass) = 0;
  virtual void CFDictionarySetValue(void* dictionary, const char* key, const char* value) = 0;

  // The next service, the caller's to release; 0 at the end.
  virtual Object IOIteratorNext(Object iterator) = 0;
  virtual void IOObjectRelease(Object object) = 0;

  // Null when the service has no such property; else the caller's to release.
  virtual const void* IORegistryEntryCreateCFProperty(Object service, const char* key) = 0;
  virtual void CFRelease(const void* text) = 0;

  // Converts to ASCII. False when a character has no place in it or the text and its NUL do not fit
  // the size; what then stands in the buffer is ended by a NUL if it was before.
  virtual bool CFStringGetCString(const void* text, char* buffer, long size) = 0;

 protected:
  ~Registry() = default;
};

// The registry of the system that this was built for.
Registry& SystemRegistry();

// The registry that discovery asks: the system's, or one that stands in for it. Null ends that. The
// stand-in stays the caller's.
Registry& CurrentRegistry();
void UseRegistry(Registry* standIn);

}  // namespace kxwan
