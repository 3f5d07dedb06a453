#pragma once

#include <profile/CommandLine.h>
#include <profile/Profile.h>
#include <simulator/modem/ModemState.h>
#include <simulator/modem/Outcome.h>
#include <simulator/modem/Script.h>

#include <string>

namespace kxsim {

// Turns command lines into outcomes. What the profile lists wins over what is built in; the
// built-in command is carried out silently all the same when the listed answer is a success.
class Interpreter {
 public:
  explicit Interpreter(const Profile& profile);

  // Starts the device anew, with the card that is in it.
  void PowerUp();
  Outcome Execute(const std::string& line);
  // The bytes of an outcome in the form that the host has asked for.
  std::string Spoken(const Outcome& outcome) const;

  ModemState& State() { return state_; }
  const ModemState& State() const { return state_; }

 private:
  Outcome WakeUp(const std::string& line);
  Outcome RunLine(const std::string& line);
  Outcome RunScripted(const std::string& line);
  Outcome RunCommand(const Invocation& command);
  Outcome RunBuiltIn(const Invocation& command);
  Outcome Play(const Answer& answer, const std::string& line);
  void CarryOutSilently(const std::string& line, Outcome& outcome);
  std::string LineEnd() const;

  const Profile& profile_;
  Script script_;
  ModemState state_;
  std::string lastLine_;
};

}  // namespace kxsim
