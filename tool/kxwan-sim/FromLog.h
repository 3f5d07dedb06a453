#pragma once

#include <profile/Profile.h>

#include <string>

namespace kxsim {

// What kxwan-sim does with a log. Both tell on standard error what there is to know, and give an
// exit status: 2 for a file that cannot be read or written, 1 for a log with nothing to play.
int LoadLog(const std::string& path, const std::string& port, Profile& profile);

// Saves a profile without what belongs to a person, and names what was replaced. A file that is
// there stays as it is unless it may be overwritten.
int SaveProfile(Profile profile, const std::string& path, bool overwrite);

}  // namespace kxsim
