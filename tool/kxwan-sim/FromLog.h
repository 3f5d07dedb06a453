#pragma once

#include <profile/Profile.h>
#include <recording/Anonymiser.h>
#include <recording/LogReader.h>

#include <string>
#include <vector>

namespace kxsim {

// Reads a log that is named on the command line. What is noted stands in the reading even when
// there is nothing to play.
Result LoadLog(const std::string& path, const std::string& port, LogReading& reading);

// Saves a profile without what belongs to a person, and gives what was replaced. A file that is
// there stays as it is unless it may be overwritten.
Result SaveProfile(Profile profile, const std::string& path, bool overwrite,
                   std::vector<Replacement>& replaced);

}  // namespace kxsim
