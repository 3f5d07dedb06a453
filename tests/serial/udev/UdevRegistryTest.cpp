// Runs under umockdev-wrapper: the system's libudev, in a made-up /sys.

#include <KXWAN/serial/KxSerial.h>
#include <gtest/gtest.h>
#include <umockdev.h>

#include <memory>
#include <string>
#include <vector>

namespace {

struct Device {
  std::string place;  // in /sys/devices, the device that the tty belongs to; virtual for none
  std::string name;
  const char* type = nullptr;  // of a UART
};

std::string Description(const Device& device) {
  const std::string place = "P: /devices/" + device.place;
  std::string text = device.place == "virtual" ? "" : place + "\nE: SUBSYSTEM=usb\n\n";
  text += place + "/tty/" + device.name + "\nN: " + device.name + "\nE: SUBSYSTEM=tty\n";
  text += "E: DEVNAME=/dev/" + device.name + "\n";
  return device.type == nullptr ? text : text + "A: type=" + device.type + "\\n\n";
}

TEST(UdevRegistry, ListsWhatCouldHoldADevice) {
  const std::string longName = "tty" + std::string(124, 'x');
  const struct {
    const char* what;
    std::vector<Device> devices;
    std::string listed;
  } kCases[] = {
      {"a machine of everything",
       {{"pci0/usb1/1-1/1-1:1.0/ttyUSB0", "ttyUSB0"},
        {"pci0/usb1/1-2/1-2:1.0", "ttyACM0"},
        {"platform/serial8250", "ttyS1", "0"},
        {"pnp0/00:01", "ttyS0", "4"},
        {"virtual", "console"}},
       "ttyUSB0=/dev/ttyUSB0 ttyACM0=/dev/ttyACM0 ttyS0=/dev/ttyS0 "},
      {"consoles only", {{"virtual", "console"}, {"virtual", "tty1"}}, ""},
      {"not ASCII", {{"1", "ttyA"}, {"2", "tty\xC3\x9C"}, {"3", "ttyC"}}, "ttyA=/dev/ttyA = "},
      {"long", {{"1", longName}, {"2", "ttyC"}}, "=/dev/" + longName + " "},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.what);
    UMockdevTestbed* testbed = umockdev_testbed_new();
    for (const Device& device : row.devices) {
      EXPECT_TRUE(umockdev_testbed_add_from_string(testbed, Description(device).c_str(), nullptr));
    }
    KxSerial port;
    ModemDescriptorArray* list = nullptr;
    EXPECT_EQ(port.GetInstalledSerialDevices(&list), row.listed.empty() ? 0 : 1);
    const std::unique_ptr<ModemDescriptorArray> owned(list);
    std::string listed;
    for (int i = 1; list != nullptr && i <= list->count; ++i) {
      listed += std::string(list->GetNameAtIndex(i)) + "=" + list->GetPathAtIndex(i) + " ";
    }
    EXPECT_EQ(listed, row.listed);
    g_object_unref(testbed);
  }
}

}  // namespace
