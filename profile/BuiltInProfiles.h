#pragma once

namespace kxsim {

// A profile that is built into the program: its name and the text of its file.
struct BuiltInProfile {
  const char* name;
  const char* text;
};

// All of them in order of their names; a row of null pointers ends the table.
extern const BuiltInProfile kBuiltInProfiles[];

}  // namespace kxsim
