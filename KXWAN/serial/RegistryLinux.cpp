#include <KXWAN/serial/RegistryPrivate.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <libudev.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace kxwan {
namespace {

struct Release {
  void operator()(udev* context) const { udev_unref(context); }
  void operator()(udev_enumerate* search) const { udev_enumerate_unref(search); }
  void operator()(udev_device* device) const { udev_device_unref(device); }
};
template <typename Type>
using Owned = std::unique_ptr<Type, Release>;

struct Tty {
  std::string name;
  std::string path;
};

std::string TextOf(const char* text) { return text != nullptr ? text : ""; }

// Consoles and pseudo-terminals belong to no device. A UART that the kernel reserved but did not
// find is of type 0; USB and ACM ttys have no type.
bool CouldHoldDevice(udev_device* tty) {
  if (udev_device_get_parent(tty) == nullptr) return false;
  return !Equals(udev_device_get_sysattr_value(tty, "type"), "0");
}

// libudev as the registry. A dictionary is a search, a text a std::string. Iterators and services
// are lists under a number: those that are still to come, and the one. One thread at a time gets
// in, as libudev demands.
class UdevRegistry final : public Registry {
 public:
  int IOMasterPort(Object, Object* masterPort) override {
    const Lock lock(guard_);
    if (context_ == nullptr) context_.reset(udev_new());
    *masterPort = 0;
    return context_ == nullptr ? ENOMEM : 0;
  }

  void* IOServiceMatching(const char*) override {
    const Lock lock(guard_);
    Owned<udev_enumerate> search(udev_enumerate_new(context_.get()));
    if (search == nullptr) return nullptr;
    const int added = udev_enumerate_add_match_subsystem(search.get(), "tty");
    return added < 0 ? nullptr : search.release();
  }

  // The one value that is ever asked for, serial streams, is what CouldHoldDevice picks.
  void CFDictionarySetValue(void*, const char*, const char*) override {}

  int IOServiceGetMatchingServices(Object, void* dictionary, Object* iterator) override {
    const Lock lock(guard_);
    if (dictionary == nullptr) return EINVAL;
    Owned<udev_enumerate> search(static_cast<udev_enumerate*>(dictionary));
    const int error = udev_enumerate_scan_devices(search.get());
    if (error < 0) return -error;
    std::vector<Tty> ttys;
    udev_list_entry* entry = nullptr;
    udev_list_entry_foreach(entry, udev_enumerate_get_list_entry(search.get())) {
      Owned<udev_device> tty(
          udev_device_new_from_syspath(context_.get(), udev_list_entry_get_name(entry)));
      if (tty == nullptr || !CouldHoldDevice(tty.get())) continue;
      ttys.push_back(
          {TextOf(udev_device_get_sysname(tty.get())), TextOf(udev_device_get_devnode(tty.get()))});
    }
    *iterator = Keep(std::move(ttys));
    return 0;
  }

  Object IOIteratorNext(Object iterator) override {
    const Lock lock(guard_);
    const auto coming = objects_.find(iterator);
    if (coming == objects_.end() || coming->second.empty()) return 0;
    Tty tty = std::move(coming->second.front());
    coming->second.erase(coming->second.begin());
    return Keep({std::move(tty)});
  }

  void IOObjectRelease(Object object) override {
    const Lock lock(guard_);
    objects_.erase(object);
  }

  const void* IORegistryEntryCreateCFProperty(Object service, const char* key) override {
    const Lock lock(guard_);
    const auto found = objects_.find(service);
    if (found == objects_.end()) return nullptr;
    const Tty& tty = found->second.front();
    const std::string& text = Equals(key, "IOTTYDevice") ? tty.name : tty.path;
    return text.empty() ? nullptr : new std::string(text);
  }

  void CFRelease(const void* text) override { delete static_cast<const std::string*>(text); }

  bool CFStringGetCString(const void* text, char* buffer, long size) override {
    const std::string& source = *static_cast<const std::string*>(text);
    const auto isAscii = [](char ch) { return static_cast<unsigned char>(ch) < 0x80; };
    if (source.size() >= static_cast<size_t>(size)) return false;
    if (!std::all_of(source.begin(), source.end(), isAscii)) return false;
    source.copy(buffer, source.size());
    buffer[source.size()] = '\0';
    return true;
  }

 private:
  using Lock = std::lock_guard<std::mutex>;

  Object Keep(std::vector<Tty> ttys) {
    objects_[++lastObject_] = std::move(ttys);
    return lastObject_;
  }

  std::mutex guard_;
  Owned<udev> context_;
  std::map<Object, std::vector<Tty>> objects_;
  Object lastObject_ = 0;
};

}  // namespace

Registry& SystemRegistry() {
  static UdevRegistry registry;
  return registry;
}

}  // namespace kxwan
