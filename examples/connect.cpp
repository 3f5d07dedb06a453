// Readies a device for a data call and prints the number to dial and the speed of the line, as a
// program such as pppd wants them. The PIN is read from standard input.
#include <KXWAN/KXWAN.h>

#include <cstdio>
#include <iostream>
#include <string>

namespace {

// True when the SIM can be used, with or without the PIN.
bool Unlock(CSWirelessModem& device) {
  constexpr unsigned long kTimeoutMs = 20000;  // a card may take its time
  if (kxwan::ReadSimState(device.m_pModem) != kxwan::SimState::kPin) return true;
  std::string pin;
  std::getline(std::cin, pin);
  const kxwan::PinOutcome outcome = kxwan::EnterPin(device.m_pModem, pin.c_str(), kTimeoutMs);
  if (outcome == kxwan::PinOutcome::kAccepted) return true;
  std::fprintf(stderr, "%s\n", kxwan::DescribePinOutcome(outcome));
  return false;
}

bool Prepare(CSWirelessModem& device, KXModemProperties& properties, const char* apn) {
  if (device.PrepareDeviceForConnection(&properties, apn)) return true;
  const unsigned long code = CSWirelessModem::GetLastModemError();
  std::fprintf(stderr, "code %lu: %s\n", code, kxwan::DescribeConnectError(code));
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s PORT APN\n", argv[0]);
    return 2;
  }
  CSWirelessModem device;
  if (!device.Open(argv[1])) {
    std::fprintf(stderr, "%s cannot be opened; /tmp/zrklog.txt tells why\n", argv[1]);
    return 1;
  }
  unsigned long speed = 0;
  KXModemProperties properties = {};
  properties.dwDeviceType = device.DetectModem(speed);
  device.GetModelAndManufacturer(properties.szModel, sizeof properties.szModel,
                                 properties.szManufacturer, sizeof properties.szManufacturer);
  if (!Unlock(device) || !Prepare(device, properties, argv[2])) return 1;

  if (CSWirelessModem::DoesGPRSDeviceRequire57600(properties.szManufacturer, properties.szModel)) {
    speed = 57600;
  }
  char number[16];
  kxwan::DialNumber(properties.szManufacturer, properties.szModel, number, sizeof number);
  std::printf("dial %s at %lu bit/s\n", number, speed);
}
