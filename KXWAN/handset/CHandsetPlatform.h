#pragma once

#include <cstdint>

// The radio technologies of a device, a set of bits. 0 means that nothing was recognised.
using CHandsetPlatform = uint32_t;

enum : CHandsetPlatform {
  PLATFORM_UNKNOWN = 0x0000,
  PLATFORM_GSM = 0x0001,
  PLATFORM_GPRS = 0x0002,    // answers the packet-service attach test
  PLATFORM_EDGE = 0x0004,    // knows the 3G quality-of-service commands
  PLATFORM_CDMA = 0x0008,    // IS-95, IS-707 data
  PLATFORM_1XRTT = 0x0010,   // CDMA2000 1xRTT
  PLATFORM_1XEVDO = 0x0020,  // 1xEV-DO, IS-856
  PLATFORM_CSD = 0x0040,     // circuit-switched data; never detected
  PLATFORM_UMTS = 0x0080,
  PLATFORM_TDMA = 0x0100,  // IS-136
  PLATFORM_IDEN = 0x0200,
  PLATFORM_1XQNC = 0x0400,       // CDMA Quick Net Connect; never detected, chosen by the caller
  PLATFORM_1X_SPRINT = 0x0800,   // CDMA 1X with Mobile IP; never detected, chosen by the caller
  PLATFORM_1XEVDO_REVA = 0x1000  // EV-DO Revision A; detected together with PLATFORM_1XEVDO
};
