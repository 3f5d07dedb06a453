#pragma once

#include <optional>
#include <string>

namespace kxtool {

// The exit status of the program.
enum ExitStatus : int {
  kDone = 0,
  kDeviceFailed = 1,  // the device did not do it
  kWrongCall = 2      // nothing was asked of a device: the call cannot be carried out
};

// Why something was not done, in a sentence or two that say what to do about it.
struct Failure {
  std::string sentence;
  int status;
};

// Nothing when it was done.
using Result = std::optional<Failure>;

inline Failure WrongCall(std::string sentence) { return {std::move(sentence), kWrongCall}; }
inline Failure DeviceFailed(std::string sentence) { return {std::move(sentence), kDeviceFailed}; }

}  // namespace kxtool
