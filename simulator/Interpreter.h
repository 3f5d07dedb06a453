#pragma once

#include <simulator/Outcome.h>
#include <simulator/Profile.h>
#include <simulator/Script.h>

#include <string>

namespace kxsim {

// How the device talks at the moment.
struct Dialogue {
  bool echo = true;     // ATE
  bool verbose = true;  // ATV
  bool quiet = false;   // ATQ
};

// Turns command lines into outcomes. It knows nothing of time and terminals.
class Interpreter {
 public:
  explicit Interpreter(const Profile& profile);

  Outcome Execute(const std::string& line);
  const Dialogue& Talk() const { return dialogue_; }
  // The bytes of an outcome in the device's form.
  std::string Spoken(const Outcome& outcome) const;

 private:
  Outcome ExecuteScripted(const std::string& line);

  const Profile& profile_;
  Script script_;
  Dialogue dialogue_;
};

}  // namespace kxsim
