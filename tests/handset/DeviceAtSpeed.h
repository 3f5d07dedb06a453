#pragma once

#include <tests/support/ScriptedDevice.h>

// A device that answers at its own speed only, with a modem that is at that speed. It has answered
// two commands, one late and one at once, so that no delay is unusual behind an answer that never
// comes: on a busy machine it may be any.
class DeviceAtSpeed : public ScriptedDevice {
 public:
  DeviceAtSpeed(unsigned long baud, const Answers& answers, bool moves = true)
      : ScriptedDevice(ProfileAt(baud, answers, moves)) {
    SetPort(baud);
    int result = -1;
    CString response;
    for (int i = 0; i < 2; ++i) Modem()->SendCommandGetResponse("AT\r", result, response);
    Device().ClearCommands();
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
    profile.faults = {{.kind = "late", .at = 1, .ms = 1400, .text = ""}};
    return profile;
  }
};
