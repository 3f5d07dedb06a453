#pragma once

#include <KXWAN/KXWAN.h>
#include <profile/Profile.h>

#include <string>

namespace kxtool {

// What the library makes of a device, as a profile expects it. Each of these reads one thing from
// an open device and stores it under the profile's keys.
struct Observation {
  kxsim::Expectation& seen;
  CHandsetPlatform platform = PLATFORM_UNKNOWN;
  unsigned long speed = 0;
  ModemInfo info = {};
};

// Finds the speed and names the platform.
void ObserveSpeed(CSWirelessModem& device, Observation& observation);

// For a device whose speed and platform are known already.
void TakeSpeed(CHandsetPlatform platform, unsigned long speed, Observation& observation);

// False when the device is silent.
bool ObserveInformation(CSWirelessModem& device, Observation& observation);

// False, with a charge of 0, when the device does not tell.
bool ObserveBattery(CSWirelessModem& device, Observation& observation);

// What the SIM asks for.
void ObserveSim(CSWirelessModem& device, Observation& observation);

// Raises the speed.
void ObserveFastSpeed(CSWirelessModem& device, Observation& observation);

// Readies a data call to "internet". The number to dial is told of a device that is dialled through
// a packet-data context. False when it is not ready.
bool ObservePreparation(CSWirelessModem& device, KXModemProperties properties,
                        Observation& observation);

// The record that preparing the device wants.
KXModemProperties PropertiesOf(CHandsetPlatform platform, const std::string& manufacturer,
                               const std::string& model);

}  // namespace kxtool
