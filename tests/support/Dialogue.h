#pragma once

#include <tests/support/ScriptedDevice.h>

// The commands of a list of answers, in its order: what a device must have been sent when every
// answer was used once and nothing else was asked.
inline std::vector<std::string> CommandsOf(const Answers& answers) {
  std::vector<std::string> commands;
  for (const auto& answer : answers) commands.push_back(answer.first);
  return commands;
}
