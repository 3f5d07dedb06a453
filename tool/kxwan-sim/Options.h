#pragma once

#include <profile/Failure.h>

#include <cstdint>
#include <string>
#include <vector>

namespace kxsim {

// What the program is told to do.
struct Options {
  std::vector<std::string> profiles;
  std::vector<std::string> links;
  std::vector<std::string> faults;
  std::string onConnect;
  std::string describe;
  std::string log;
  std::string port;
  std::string write;
  uint64_t seed = 1;
  double seconds = 0;  // 0: until it is stopped
  bool list = false;
  bool trace = false;
  bool raw = false;
  bool force = false;
  std::string answer;  // the help or the version, when that is asked for
};

Result ReadOptions(int argc, const char* const* argv, Options& options);

}  // namespace kxsim
