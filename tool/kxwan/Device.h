#pragma once

#include <KXWAN/KXWAN.h>
#include <tool/kxwan/Failure.h>
#include <tool/kxwan/Port.h>
#include <tool/kxwan/Report.h>

#include <string>

namespace kxtool {

// Who answers on a port, and at which speed.
struct Identity {
  CHandsetPlatform platform = PLATFORM_UNKNOWN;
  std::string manufacturer;
  std::string model;
  unsigned long speed = 0;
  uint32_t ignored = 0;  // questions that the device never answers

  // The record that preparing the device wants.
  KXModemProperties Properties() const;
};

// Finds the speed at which the device answers: quickly, then, for a device that takes its time,
// patiently.
Result FindSpeed(Port& port, const Report& report, unsigned long& speed);

// Finds the speed and asks the device who it is.
Result Identify(Port& port, const Report& report, Identity& identity);

// Fails where nothing is known of the platform because the device left questions without an answer.
Result CheckIdentified(const Port& port, const Identity& identity);

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
  bool Came() const {
    return result < kxwan::kResultTimeout || result == kxwan::kResultEquipmentError;
  }
};
Exchange Ask(Port& port, const std::string& command, unsigned long timeoutMs);

// Whether a device answers at the speed, where the port stays then. Any answer will do, so that
// nothing else is sent to know whose it is.
bool AnswersAt(Port& port, unsigned long speed, const std::string& command, unsigned long timeoutMs,
               std::string& reply);

// "OK", "ERROR", "error 10", "no answer", "not sent", "device gone" or "line blocked".
std::string ResultName(const Exchange& exchange);

}  // namespace kxtool
