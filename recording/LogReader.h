#pragma once

#include <profile/Profile.h>
#include <recording/LogNotes.h>

#include <istream>
#include <string>
#include <vector>

namespace kxsim {

struct LogReading {
  Profile profile;
  size_t exchanges = 0;        // how many the profile was made of
  std::vector<LogNote> notes;  // what is played, and what cannot be and why, by line
};

// Reads the debug log that the library keeps and makes a device of it that holds the same dialogue.
// Where the log tells of several ports, the given one is taken; without one, that with the most
// exchanges. A log with nothing to play is a failure; the notes say why.
Result ReadLog(std::istream& log, const std::string& port, LogReading& reading);

}  // namespace kxsim
