#pragma once

#include <simulator/modem/EquipmentError.h>

#include <string>
#include <vector>

namespace kxsim {

// What becomes of the data call once the result has been sent.
enum class CallAction { kNone, kConnect, kResume };

// What comes of a command line: what is said, and what is done when it has been said.
struct Outcome {
  std::string text = {};              // information text, its lines parted by "\n"
  std::string result = "OK";          // empty for none
  std::vector<std::string> raw = {};  // pieces sent byte for byte in place of text and result
  int latencyMs = 0;
  int gapMs = 0;
  EquipmentError error = kNoError;  // gives the result, in the form that is asked for
  CallAction call = CallAction::kNone;
  bool newSpeed = false;   // the line moves to the speed of the state
  bool abortable = false;  // a byte from the host breaks it off
};

}  // namespace kxsim
