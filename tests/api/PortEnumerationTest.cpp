#include <KXWAN/api/PortEnumeration.h>
#include <KXWAN/serial/RegistryPrivate.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

// A machine with so many serial devices, "cu.1" at "/dev/cu.1" and so on.
class Machine final : public kxwan::Registry {
 public:
  explicit Machine(Object devices) : devices_(devices) { kxwan::UseRegistry(this); }
  ~Machine() { kxwan::UseRegistry(nullptr); }

  int IOMasterPort(Object, Object*) override { return 0; }
  void* IOServiceMatching(const char*) override { return this; }
  void CFDictionarySetValue(void*, const char*, const char*) override {}
  int IOServiceGetMatchingServices(Object, void*, Object* iterator) override {
    *iterator = 1;
    next_ = 0;
    return 0;
  }
  Object IOIteratorNext(Object) override { return next_ < devices_ ? ++next_ : 0; }
  void IOObjectRelease(Object) override {}
  const void* IORegistryEntryCreateCFProperty(Object service, const char* key) override {
    text_ = std::strcmp(key, "IOTTYDevice") == 0 ? "cu." : "/dev/cu.";
    text_ += std::to_string(service);
    return text_.c_str();
  }
  void CFRelease(const void*) override {}
  bool CFStringGetCString(const void* text, char* buffer, long) override {
    std::strcpy(buffer, static_cast<const char*>(text));
    return true;
  }

 private:
  const Object devices_;
  Object next_ = 0;
  std::string text_;
};

class PortEnumeration : public testing::Test {
 protected:
  bool First() { return KXModemFindFirst(name_, sizeof name_, path_, sizeof path_); }
  bool Next() { return KXModemFindNext(name_, sizeof name_, path_, sizeof path_); }
  std::string Found() const { return std::string(name_) + " " + path_; }

  char name_[32] = "";
  char path_[32] = "";
};

TEST_F(PortEnumeration, WalksTheDevicesAndStartsAnew) {
  const Machine machine(2);
  EXPECT_FALSE(Next());
  for (int walk = 0; walk < 2; ++walk) {
    ASSERT_TRUE(First());
    EXPECT_EQ(Found(), "cu.1 /dev/cu.1");
    EXPECT_EQ(g_nModemIndex, 2);
  }
  ASSERT_TRUE(Next());
  EXPECT_EQ(Found(), "cu.2 /dev/cu.2");
  EXPECT_NE(modemList, nullptr);
  EXPECT_FALSE(Next());
  EXPECT_EQ(modemList, nullptr);
  EXPECT_FALSE(Next());
  EXPECT_EQ(Found(), "cu.2 /dev/cu.2");

  const Machine empty(0);
  EXPECT_FALSE(First());
}

TEST_F(PortEnumeration, FillsBuffersAsStrncpyDoes) {
  const Machine machine(1);
  char name[8] = "???????";
  char path[8] = "???????";
  ASSERT_TRUE(KXModemFindFirst(name, 6, path, 4));
  EXPECT_EQ(std::string(name, 7), std::string("cu.1\0\0?", 7));
  EXPECT_EQ(std::string(path, 5), "/dev?");
  ASSERT_TRUE(KXModemFindFirst(name, 0, path, -1));
  EXPECT_EQ(std::string(path, 5), "/dev?");
  g_nModemIndex = -5;  // an application can store anything here
  ASSERT_TRUE(Next());
  EXPECT_EQ(Found(), " ");
}

struct Case {
  const char* port;
  const char* other;
  bool ofType;
  bool match;
};

const Case kCases[] = {
    {"cu.modem1", "MODEM", true, false},   {"CU.Modem", "cu.modem", true, true},
    {"cu.modem", "CU.Modem", true, false}, {"cu.modem", "cu.modem1", false, false},
    {"cu.modem", "", true, false},         {"", "", true, true},
};

TEST(PortNames, AreComparedEachInItsWay) {
  for (const Case& row : kCases) {
    EXPECT_EQ(KXModemPortOfType(row.port, row.other), row.ofType) << row.port << " " << row.other;
    EXPECT_EQ(KXModemPortMatch(row.port, row.other), row.match) << row.port << " " << row.other;
  }
}

}  // namespace
