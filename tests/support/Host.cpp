#include <gtest/gtest.h>
#include <tests/support/Host.h>

kxsim::Profile ProfileOf(const std::string& toml) {
  kxsim::Profile profile;
  std::string error;
  EXPECT_TRUE(kxsim::ParseProfile(toml, "test.toml", profile, error)) << error;
  return profile;
}
