#pragma once

#include <profile/Failure.h>
#include <profile/Profile.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kxsim {

// A parameter of a fault, where it stands in the record and what it may be. One of the three places
// is given.
struct FaultParameter {
  std::string_view name;
  std::string_view expected;
  int Fault::*number = nullptr;
  double Fault::*chance = nullptr;
  std::string Fault::*text = nullptr;
};

// What a kind of fault makes of a parameter besides "at" and "rate".
struct FaultUse {
  std::string_view parameter;
  std::string_view meaning;
  bool needed = false;
  int number = 0;  // these hold when it is not given
  std::string_view text = {};
};

struct FaultKind {
  std::string_view name;
  std::string_view meaning;
  FaultUse uses[2] = {};
  bool ratePerByte = false;  // otherwise for each reply
};

std::span<const FaultParameter> FaultParameters();

// Null when there is no such kind.
const FaultKind* FindFaultKind(std::string_view name);

// The fault with what holds for the parameters that were not given.
Fault WithPresets(Fault fault);

// A value as it was given: a number or a text, and on a command line perhaps both.
struct FaultValue {
  std::optional<double> number;
  std::optional<std::string> text;
};

// A fault is made of its kind first, then its parameters, and is then checked for what is missing.
Result StartFault(const std::string& kind, Fault& fault);
Result SetFaultParameter(std::string_view name, const FaultValue& value, Fault& fault);
Result CheckFault(const Fault& fault);

// Reads "KIND,KEY=VALUE,...".
Result ParseFault(std::string_view words, Fault& fault);

// All kinds with their parameters, a line each.
std::string FaultHelp();

}  // namespace kxsim
