#pragma once

#include <tests/support/ScriptedDevice.h>

// A device that answers at its own speed only, with a modem that is at that speed and tries once.
class DeviceAtSpeed : public ScriptedDevice {
 public:
  DeviceAtSpeed(unsigned long baud, const Answers& answers, bool moves = true)
      : ScriptedDevice(ProfileAt(baud, answers, moves)) {
    Modem()->m_nRetries = 1;
    Modem()->m_dwResponseTimeout = 1500;
    SetPort(baud);
  }
  void SetPort(unsigned long speed) { Modem()->m_pSerial->SetDataFormat(speed, -1, -1, -1); }
  unsigned long PortSpeed() {
    unsigned long speed = 0;
    Modem()->m_pSerial->GetDataFormat(&speed);
    return speed;
  }

 private:
  static kxsim::Profile ProfileAt(unsigned long baud, const Answers& answers, bool moves) {
    kxsim::Profile profile = kxsim::ScriptedProfile(answers);
    profile.line.autobaud = false;
    profile.line.baud = static_cast<int>(baud);
    profile.line.moves = moves;
    return profile;
  }
};
