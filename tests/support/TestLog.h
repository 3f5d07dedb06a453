#pragma once

#include <string>

// What the library has logged since the last call. Tests log into a file of their own, so that they
// run in parallel and as any user.
std::string TakeLog();

// The records of a log without their time stamps.
std::string WithoutStamps(const std::string& log);
