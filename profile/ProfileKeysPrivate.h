#pragma once

#include <profile/Profile.h>
#include <toml++/toml.h>

#include <span>
#include <string>
#include <string_view>

namespace kxsim {

// One key of a profile. The section "" holds the keys above all sections.
struct ProfileKey {
  std::string_view section;
  std::string_view name;
  std::string_view expected;
  bool (*read)(const toml::node& node, Profile& profile);
  std::string (*write)(const Profile& profile);
};

std::span<const ProfileKey> ProfileKeys();

// An error in a profile: where it is, and what was expected there.
struct ProfileError {
  toml::source_region where;
  std::string text;
};

// Both read one section whose keys are not fixed. False with the error set.
bool ReadReplies(const toml::node& section, Profile& profile, ProfileError& error);
bool ReadFaults(const toml::node& section, Profile& profile, ProfileError& error);

}  // namespace kxsim
