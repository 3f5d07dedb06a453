#pragma once

#include <KXWAN/modem/CSModem.h>
#include <profile/Profile.h>
#include <simulator/SimulatedDevice.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// A command without its "\r", and its answer: information text with "OK" implied behind it, a final
// result alone or as the last line, "(silence)", or "(raw)" and bytes. Several answers to one
// command are given one after the other.
using Answers = std::vector<std::pair<std::string, std::string>>;

// A device on a pseudo-terminal that answers from a list, and a modem that has it open at 19200. A
// command that is not listed is answered with ERROR, except ATE0V1.
//
// An answer is waited for longer than a busy machine takes, silence no longer than it must be.
class ScriptedDevice {
 public:
  explicit ScriptedDevice(const Answers& answers)
      : ScriptedDevice(kxsim::ScriptedProfile(answers)) {
    const auto isSilent = [](const auto& row) { return row.second == "(silence)"; };
    if (std::any_of(answers.begin(), answers.end(), isSilent)) ExpectSilence();
  }
  explicit ScriptedDevice(kxsim::Profile profile, kxsim::DeviceOptions options = {})
      : device_(std::move(profile), std::move(options)) {
    modem_.m_pSerial->Open(device_.Path().c_str());
    modem_.m_dwResponseTimeout = 20000;
  }

  // From here on a command is sent once and waited for so long.
  void ExpectSilence(uint32_t milliseconds = 2000) {
    modem_.m_nRetries = 1;
    modem_.m_dwResponseTimeout = milliseconds;
  }

  CSModem* Modem() { return &modem_; }
  kxsim::SimulatedDevice& Device() { return device_; }
  const std::string& Path() const { return device_.Path(); }
  std::vector<std::string> Commands() const { return device_.Commands(); }

 private:
  kxsim::SimulatedDevice device_;
  CSModem modem_;
};
