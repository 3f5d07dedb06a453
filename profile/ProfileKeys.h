#pragma once

#include <profile/Profile.h>
#include <profile/Toml.h>

#include <span>
#include <string>
#include <string_view>

namespace kxsim {

// One key of a profile. The section "" holds the keys above all sections.
struct ProfileKey {
  std::string_view section;
  std::string_view name;
  std::string_view expected;
  bool (*read)(const TomlNode& node, Profile& profile);
  std::string (*write)(const Profile& profile);
};

std::span<const ProfileKey> ProfileKeys();

}  // namespace kxsim
