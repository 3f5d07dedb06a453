#pragma once

#include <profile/Profile.h>
#include <tool/kxwan/Failure.h>
#include <tool/kxwan/Port.h>
#include <tool/kxwan/Report.h>

#include <set>
#include <string>

namespace kxtool {

// What was written down of a device, fit to be passed on.
struct Recording {
  kxsim::Profile profile;
  std::set<std::string> replaced;  // what was taken out, in words
  int asked = 0;
  int silent = 0;  // questions without an answer
};

// Asks the device a fixed list of questions that change nothing. Its echo and its error reports are
// switched and put back.
Result RecordDevice(Port& port, const Report& report, Recording& recording);

// Plays the recording and writes into it what the library makes of it.
Result RecordExpectation(kxsim::Profile& profile);

}  // namespace kxtool
