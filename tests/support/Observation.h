#pragma once

#include <simulator/Profile.h>

// Drives the library over a simulated device on a pseudo-terminal: opens it at the speed of
// expect.open_baud, then on a fresh one finds its speed and family, reads its information and its
// SIM, unlocks that with the profile's own PIN or PUK, raises the speed and readies a data call to
// "internet". What came of it, in the form of the profile's own expectation; dial only for a
// device that is dialled through a packet-data context.
kxsim::Expectation Observe(const kxsim::Profile& profile);

// The two halves of it, each on a device of its own.
void ObserveOpening(const kxsim::Profile& profile, kxsim::Expectation& seen);
void ObserveUse(const kxsim::Profile& profile, kxsim::Expectation& seen);
