#pragma once

#include <set>
#include <string>

namespace kxtool {

// Puts "x" in the place of the letters and digits of an owner's names in one line of a reply: the
// access points, and the name beside the own phone number. Adds to replaced what was found. Numbers
// are left to kxsim::Anonymise.
void MaskPrivateTexts(std::string& line, std::set<std::string>& replaced);

}  // namespace kxtool
