#pragma once

#include <profile/Profile.h>

#include <string>

namespace kxsim {

// A profile for people to read: what it is, and how it differs from a plain device.
std::string Described(const Profile& profile);

}  // namespace kxsim
