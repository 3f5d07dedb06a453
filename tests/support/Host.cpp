#include <gtest/gtest.h>
#include <tests/support/Host.h>

kxsim::Profile ProfileOf(const std::string& toml) {
  kxsim::Profile profile;
  const kxsim::Result failure = kxsim::ParseProfile(toml, "test.toml", profile);
  if (failure) ADD_FAILURE() << failure->sentence << "\n" << toml;
  return profile;
}

kxsim::Profile ProfileNamed(const std::string& name) {
  kxsim::Profile profile;
  const kxsim::Result failure = kxsim::LoadProfile(name, profile);
  if (failure) ADD_FAILURE() << failure->sentence;
  return profile;
}
