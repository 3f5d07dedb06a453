#pragma once

#include <string>
#include <vector>

namespace kxsim {

// What comes of a command line: what is said, and what is done when it has been said.
struct Outcome {
  std::string text;              // information text, its lines parted by "\n"
  std::string result = "OK";     // empty for none
  std::vector<std::string> raw;  // pieces sent byte for byte in place of text and result
  int latencyMs = 0;
  int gapMs = 0;
  int newSpeed = 0;  // the line's speed from now on; 0 leaves it
};

}  // namespace kxsim
