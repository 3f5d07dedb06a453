#pragma once

#include <optional>
#include <string>
#include <utility>

namespace kxsim {

// The exit status of a program.
enum ExitStatus {
  kDone = 0,
  kFailed = 1,    // there is nothing to do it with, or the system refused it
  kWrongCall = 2  // the call, or a file that it names, cannot be used
};

// Why something was not done.
struct Failure {
  std::string sentence;  // may hold text of a file as it stands there: print it with Printable
  ExitStatus status = kWrongCall;
};

// Nothing when it was done.
using Result = std::optional<Failure>;

}  // namespace kxsim
