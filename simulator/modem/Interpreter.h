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
  Interpreter(const Profile& profile, DataCall& call);

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
  void CarryOutScripted(const std::string& command, Outcome& outcome);
  std::string LineEnd() const;
  std::string LineStart() const;
  std::string TextOf(const Outcome& outcome) const;
  std::string ResultOf(const Outcome& outcome) const;

  const Profile& profile_;
  Script script_;
  ModemState state_;
  std::string lastLine_;
};

}  // namespace kxsim
