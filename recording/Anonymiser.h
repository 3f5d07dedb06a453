#pragma once

#include <profile/Profile.h>

#include <cstddef>
#include <string>
#include <vector>

namespace kxsim {

// What was put in the place of something secret.
struct Replacement {
  std::string what;
  std::string by;
  size_t places = 0;
};

// Replaces PINs, PUKs, serial numbers, subscriber, card and phone numbers in the replies and texts
// of a profile. The same secret gets the same replacement everywhere, of its length and form, so
// that the dialogue still fits together.
std::vector<Replacement> Anonymise(Profile& profile);

}  // namespace kxsim
