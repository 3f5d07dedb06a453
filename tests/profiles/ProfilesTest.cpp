#include <gtest/gtest.h>
#include <simulator/Profile.h>
#include <tests/profiles/EachProfile.h>
#include <tests/support/Observation.h>

namespace {

using kxsim::Expectation;

class Profiles : public testing::TestWithParam<std::string> {};

// A device without these keys is opened at its own speed, where nothing is special.
void FillInOpening(Expectation& expected) {
  if (!expected.open) expected.open = {"ATE0V1"};
  if (!expected.opens) expected.opens = true;
}

// A key that the profile lacks differs from every value.
TEST_P(Profiles, TheLibraryMakesOfItWhatItExpects) {
  kxsim::Profile profile;
  std::string error;
  ASSERT_TRUE(kxsim::LoadProfile(GetParam(), profile, error)) << error;
  SCOPED_TRACE("profile " + profile.name);
  Expectation expected = profile.expect;
  FillInOpening(expected);

  const Expectation seen = Observe(profile);

  EXPECT_EQ(expected.open, seen.open);
  EXPECT_EQ(expected.opens, seen.opens);
  EXPECT_EQ(expected.platform, seen.platform);
  EXPECT_EQ(expected.baud, seen.baud);
  EXPECT_EQ(expected.fastBaud, seen.fastBaud);
  EXPECT_EQ(expected.manufacturer, seen.manufacturer);
  EXPECT_EQ(expected.model, seen.model);
  EXPECT_EQ(expected.version, seen.version);
  EXPECT_EQ(expected.capabilities, seen.capabilities);
  EXPECT_EQ(expected.coverage, seen.coverage);
  EXPECT_EQ(expected.signal, seen.signal);
  EXPECT_EQ(expected.battery, seen.battery);
  EXPECT_EQ(expected.sim, seen.sim);
  EXPECT_EQ(expected.pinLength, seen.pinLength);
  EXPECT_EQ(expected.prepare, seen.prepare);
  EXPECT_EQ(expected.lastError, seen.lastError);
  EXPECT_EQ(expected.dial, seen.dial);
}

INSTANTIATE_TEST_SUITE_P(BuiltIn, Profiles, testing::ValuesIn(BuiltInNames()), TestName);

}  // namespace
