#pragma once

#include <profile/Profile.h>

// Drive the library over a simulated device on a pseudo-terminal, each over one of its own, and
// give what came of it in the form of the profile's own expectation.

// Opens it at the speed of expect.open_baud.
void ObserveOpening(const kxsim::Profile& profile, kxsim::Expectation& seen);

// Finds its speed and family, reads its information and its SIM, unlocks that with the profile's
// own PIN or PUK, raises the speed and readies a data call to "internet"; dial only for a device
// that is dialled through a packet-data context.
void ObserveUse(const kxsim::Profile& profile, kxsim::Expectation& seen);
