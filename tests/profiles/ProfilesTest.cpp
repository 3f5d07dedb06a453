#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <profile/BuiltInProfiles.h>
#include <profile/Profile.h>
#include <recording/LogReader.h>
#include <tests/support/BusyMachine.h>
#include <tests/support/Host.h>
#include <tests/support/Observation.h>
#include <tests/support/SideBySide.h>
#include <tests/support/TestLog.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace {

using kxsim::Expectation;
using kxsim::Profile;

// A device without these keys is opened at its own speed, where nothing is special.
void FillInOpening(Expectation& expected) {
  if (!expected.open) expected.open = {"ATE0V1"};
  if (!expected.opens) expected.opens = true;
}

// A key that the profile lacks differs from every value.
void ExpectSame(const Expectation& expected, const Expectation& seen) {
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

// The device that the log of a run tells of, written to a profile and read again.
Profile DeviceOf(const std::string& log, const Profile& original) {
  std::istringstream stream(log);
  kxsim::LogReading reading;
  EXPECT_FALSE(kxsim::ReadLog(stream, "", reading));
  for (const kxsim::LogNote& note : reading.notes) {
    EXPECT_THAT(note.text, testing::HasSubstr(" played: "));
  }
  // The driver takes its own part from here: speeds to open at, names, PIN and PUK.
  reading.profile.expect = original.expect;
  reading.profile.sim = original.sim;
  // Without its own baud rate a profile from a log would be opened at another.
  if (!original.expect.baud) reading.profile.expect.baud = original.line.baud;
  return ProfileOf(kxsim::FormatProfile(reading.profile));
}

// What the library made of a device. A speed at which the device is deaf may play as silence, so
// the commands that it has heard while it was opened are not compared.
std::string ResultsOf(Expectation seen) {
  seen.open.reset();
  Profile profile;
  profile.expect = std::move(seen);
  return kxsim::FormatProfile(profile);
}

std::vector<std::string> BuiltInNames() {
  std::vector<std::string> names;
  for (const auto* row = kxsim::kBuiltInProfiles; row->name != nullptr; ++row) {
    names.emplace_back(row->name);
  }
  return names;
}

std::string TestName(const testing::TestParamInfo<std::string>& row) {
  std::string name = row.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

// Each half sees what the other does not.
struct Half {
  const char* name;
  void (*observe)(const Profile& profile, Expectation& seen);
  Expectation seen = {};
  std::string log = {};
};

class Profiles : public testing::TestWithParam<std::string> {};

TEST_P(Profiles, GiveWhatTheyExpectAndTheSameFromTheirLog) {
  const Profile profile = ProfileNamed(GetParam());
  SCOPED_TRACE("profile " + profile.name);
  Expectation expected = profile.expect;
  FillInOpening(expected);

  Half halves[] = {{"opening", ObserveOpening}, {"use", ObserveUse}};
  OnABusyMachine([&] {
    for (Half& half : halves) {
      half.seen = {};
      TakeLog();
      half.observe(profile, half.seen);
      half.log = TakeLog();
    }
    Expectation seen = halves[1].seen;
    seen.open = halves[0].seen.open;
    seen.opens = halves[0].seen.opens;
    ExpectSame(expected, seen);
  });
  SideBySide(halves, [&](const Half& half) {
    OnABusyMachine([&] {
      Expectation played;
      half.observe(DeviceOf(half.log, profile), played);
      EXPECT_EQ(ResultsOf(half.seen), ResultsOf(played)) << half.log;
    });
  });
}

INSTANTIATE_TEST_SUITE_P(BuiltIn, Profiles, testing::ValuesIn(BuiltInNames()), TestName);

}  // namespace
