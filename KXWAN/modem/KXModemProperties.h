#pragma once

#include <cstdint>

// The device that an application wants opened and prepared. Filled by the caller, only read here.
struct KXModemProperties {
  uint32_t dwDeviceType;    // CHandsetPlatform bits
  uint32_t dwBaudRate;      // preferred speed of the port, bits per second
  char szManufacturer[64];  // as the device reports it, NUL-terminated
  char szModel[64];         // as the device reports it, NUL-terminated
};
