#pragma once

#include <KXWAN/KXWAN.h>

#include <string>

#include <tool/Port.h>
#include <tool/Report.h>
#include <tool/Result.h>

namespace kxtool {

// Who answers on a port, and at which speed.
struct Identity {
  CHandsetPlatform platform = PLATFORM_UNKNOWN;
  std::string manufacturer;
  std::string model;
  unsigned long speed = 0;

  // The record that preparing the device wants.
  KXModemProperties Properties() const;
};

// Finds the speed at which the device answers: quickly, then, for a device that takes its time,
// patiently.
Result FindSpeed(Port& port, const Report& report, unsigned long& speed);

// Finds the speed and asks the device who it is.
Result Identify(Port& port, const Report& report, Identity& identity);

// The device's own words for itself.
void ReadNames(Port& port, Identity& identity);

// Whether a packet-data call is dialled as the CDMA networks agreed on, whatever the device.
bool DialsAsCdma(CHandsetPlatform platform);

// The number that starts a packet-data call.
std::string NumberToDial(const Identity& identity);

std::string PlatformNames(CHandsetPlatform platform);

// An exchange that is made once, whatever comes of it.
struct Exchange {
  int result = kxwan::kResultTimeout;
  std::string text;

  bool IsOk() const { return result == kxwan::kResultOk; }
};
Exchange Ask(Port& port, const std::string& command, unsigned long timeoutMs);

// Whether the device answers at all. Its echo is off and its results are words afterwards.
bool Answers(Port& port);
Failure StoppedAnswering(const Port& port);

// "OK", "ERROR", "error 10" or "no answer".
std::string ResultName(const Exchange& exchange);

}  // namespace kxtool
