#include <KXWAN/serial/KxSerial.h>
#include <KXWAN/serial/RegistryPrivate.h>
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

// A null text is a property that the service does not have.
struct Service {
  const char* name;
  const char* path;
};

struct Faults {
  int masterPort = 0;
  bool noDictionary = false;
  int matching = 0;
};

// A registry of made-up services that counts what was handed out and not given back.
class FakeRegistry final : public kxwan::Registry {
 public:
  FakeRegistry(const Faults& faults, const std::vector<Service>& services)
      : faults_(faults), services_(services) {
    kxwan::UseRegistry(this);
  }
  ~FakeRegistry() { kxwan::UseRegistry(nullptr); }

  int IOMasterPort(Object, Object* masterPort) override {
    *masterPort = 700;
    return faults_.masterPort;
  }
  void* IOServiceMatching(const char* serviceClass) override {
    EXPECT_STREQ(serviceClass, "IOSerialBSDClient");
    return faults_.noDictionary ? nullptr : this;
  }
  void CFDictionarySetValue(void*, const char* key, const char* value) override {
    EXPECT_STREQ(key, "IOSerialBSDClientType");
    EXPECT_STREQ(value, "IOSerialStream");
  }
  int IOServiceGetMatchingServices(Object masterPort, void* dictionary, Object*) override {
    EXPECT_EQ(masterPort, 700u);
    EXPECT_EQ(dictionary == nullptr, faults_.noDictionary);
    if (faults_.matching == 0) ++held;
    return faults_.matching;
  }
  Object IOIteratorNext(Object) override {
    if (next_ == services_.size()) return 0;
    ++held;
    return static_cast<Object>(++next_);
  }
  void IOObjectRelease(Object) override { --held; }
  const void* IORegistryEntryCreateCFProperty(Object service, const char* key) override {
    const Service& entry = services_.at(service - 1);
    const char* text = std::strcmp(key, "IOTTYDevice") == 0 ? entry.name : entry.path;
    if (text != nullptr) ++held;
    return text;
  }
  void CFRelease(const void*) override { --held; }
  bool CFStringGetCString(const void* text, char* buffer, long size) override {
    if (std::strlen(static_cast<const char*>(text)) >= static_cast<size_t>(size)) return false;
    std::strcpy(buffer, static_cast<const char*>(text));
    return true;
  }

  int held = 0;

 private:
  const Faults faults_;
  const std::vector<Service> services_;
  size_t next_ = 0;
};

TEST(SerialDevices, AreListedAsTheRegistryTellsThem) {
  const std::string name126(126, 'n');
  const std::string name127(127, 'n');
  const std::string path510(510, 'p');
  const std::string path511(511, 'p');
  const std::vector<Service> two = {{"ttyUSB0", "/dev/ttyUSB0"}, {"ttyS0", "/dev/ttyS0"}};
  const std::vector<Service> fitting = {{name126.c_str(), path510.c_str()}, {"c", "/dev/c"}};
  const std::vector<Service> missing = {{nullptr, "/dev/a"}, {"b", nullptr}, {"c", "/dev/c"}};
  const std::vector<Service> tooLong = {{"a", path511.c_str()}, {name127.c_str(), "b"}, {"c", "c"}};
  const struct {
    const char* what;
    Faults faults;
    std::vector<Service> services;
    std::vector<Service> listed;
    const char* complaint = "";
  } kCases[] = {
      {"two devices", {}, two, two},
      {"no device", {}, {}, {}},
      {"properties missing", {}, missing, {{"", "/dev/a"}, {"b", ""}, {"c", "/dev/c"}}},
      {"texts that just fit", {}, fitting, fitting},
      {"a long name ends the list, a long path does not", {}, tooLong, {{"a", ""}, {"", "b"}}},
      {"no master port", {.masterPort = 5}, two, two, "IOMasterPort error returned 5\n"},
      {"no search",
       {.masterPort = -1, .noDictionary = true, .matching = 22},
       two,
       {},
       "IOMasterPort error returned -1\nIOServiceMatching returned a NULL dictionary.\n"
       "IOServiceGetMatchingServices returned 22\n"},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.what);
    FakeRegistry registry(row.faults, row.services);
    ModemDescriptorArray untouched;
    ModemDescriptorArray* list = &untouched;
    KxSerial port;
    testing::internal::CaptureStderr();
    EXPECT_EQ(port.GetInstalledSerialDevices(&list), row.listed.empty() ? 0 : 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), row.complaint);
    EXPECT_EQ(registry.held, 0);
    ASSERT_EQ(list == &untouched, row.faults.matching != 0);
    ASSERT_EQ(list == nullptr, row.listed.empty() && row.faults.matching == 0);
    const std::unique_ptr<ModemDescriptorArray> owned(list == &untouched ? nullptr : list);
    for (size_t i = 0; i < row.listed.size(); ++i) {
      EXPECT_STREQ(list->GetNameAtIndex(static_cast<int>(i) + 1), row.listed[i].name);
      EXPECT_STREQ(list->GetPathAtIndex(static_cast<int>(i) + 1), row.listed[i].path);
    }
    EXPECT_TRUE(list == nullptr || static_cast<size_t>(list->count) == row.listed.size());
  }
}

TEST(ModemDescriptorArray, GrowsByTenAndCountsFromOne) {
  ModemDescriptorArray list;
  for (int i = 1; i <= 10; ++i) EXPECT_EQ(list.Add(std::to_string(i).c_str(), "/dev/tty"), 1);
  EXPECT_EQ(list.capacity, 10);
  list.Add(nullptr, "/dev/last");
  EXPECT_EQ(list.capacity, 20);
  EXPECT_STREQ(list.GetNameAtIndex(1), "1");
  EXPECT_STREQ(list.GetNameAtIndex(10), "10");
  EXPECT_EQ(list.GetNameAtIndex(11), nullptr);
  EXPECT_STREQ(list.GetPathAtIndex(11), "/dev/last");
  for (const int index : {-1, 0, 12}) EXPECT_EQ(list.GetPathAtIndex(index), nullptr);
}

}  // namespace
