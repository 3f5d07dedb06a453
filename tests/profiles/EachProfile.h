#pragma once

#include <gtest/gtest.h>
#include <simulator/BuiltInProfiles.h>

#include <algorithm>
#include <string>
#include <vector>

// For a test that is run with every built-in profile.
inline std::vector<std::string> BuiltInNames() {
  std::vector<std::string> names;
  for (const auto* row = kxsim::kBuiltInProfiles; row->name != nullptr; ++row) {
    names.emplace_back(row->name);
  }
  return names;
}

inline std::string TestName(const testing::TestParamInfo<std::string>& row) {
  std::string name = row.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}
