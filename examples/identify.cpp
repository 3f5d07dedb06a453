#include <KXWAN/KXWAN.h>

#include <cstdio>

int main(int argc, char** argv) {
  CSWirelessModem device;  // closes the port when it goes
  if (argc != 2 || !device.Open(argv[1])) return 1;
  unsigned long speed = 0;
  const CHandsetPlatform platform = device.DetectModem(speed);
  if (platform == PLATFORM_UNKNOWN) return 2;
  char maker[64], model[64];
  device.GetModelAndManufacturer(model, sizeof model, maker, sizeof maker);
  const char* family = GetModemProtocolTypeAsString(platform);
  std::printf("%s %s (%s) at %lu bit/s\n", maker, model, family, speed);
}
