#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <simulator/LogReader.h>
#include <simulator/Profile.h>
#include <tests/profiles/EachProfile.h>
#include <tests/support/Observation.h>
#include <tests/support/TestLog.h>

#include <sstream>

namespace {

using kxsim::Expectation;
using kxsim::Profile;

// The device that the log of a run tells of, written to a profile and read again.
Profile DeviceOf(const std::string& log, const Profile& original) {
  std::istringstream stream(log);
  kxsim::LogReading reading;
  EXPECT_TRUE(kxsim::ReadLog(stream, "", reading));
  for (const kxsim::LogNote& note : reading.notes) {
    EXPECT_THAT(note.text, testing::HasSubstr(" played: "));
  }
  // The driver takes its own part from here: speeds to open at, names, PIN and PUK.
  reading.profile.expect = original.expect;
  reading.profile.sim = original.sim;
  Profile again;
  std::string error;
  const std::string written = kxsim::FormatProfile(reading.profile);
  EXPECT_TRUE(kxsim::ParseProfile(written, "log.toml", again, error)) << error << "\n" << written;
  return again;
}

// What the library made of a device. A speed at which the device is deaf may play as silence, so
// the commands that it has heard while it was opened are not compared.
std::string ResultsOf(Expectation seen) {
  seen.open.reset();
  Profile profile;
  profile.expect = std::move(seen);
  return kxsim::FormatProfile(profile);
}

using Half = void (*)(const Profile& profile, Expectation& seen);

void ExpectSameFromLog(const Profile& profile, Half observe) {
  TakeLog();
  Expectation seen;
  observe(profile, seen);
  const std::string log = TakeLog();
  Expectation played;
  observe(DeviceOf(log, profile), played);
  EXPECT_EQ(ResultsOf(seen), ResultsOf(played)) << log << TakeLog();
}

class RoundTrip : public testing::TestWithParam<std::string> {};

TEST_P(RoundTrip, DevicePlayedFromItsLogGivesTheSameResults) {
  Profile profile;
  std::string error;
  ASSERT_TRUE(kxsim::LoadProfile(GetParam(), profile, error)) << error;
  // Without its own baud rate a profile from a log would be opened at another.
  if (!profile.expect.baud) profile.expect.baud = profile.line.baud;
  for (const Half half : {ObserveOpening, ObserveUse}) ExpectSameFromLog(profile, half);
}

INSTANTIATE_TEST_SUITE_P(BuiltIn, RoundTrip, testing::ValuesIn(BuiltInNames()), TestName);

}  // namespace
