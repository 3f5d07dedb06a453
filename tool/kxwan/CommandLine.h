#pragma once

#include <tool/kxwan/Verb.h>

#include <span>
#include <string>

namespace kxtool {

// What a command line asks for: a verb, or a text to be shown, such as help.
struct CommandLine {
  const Verb* verb = nullptr;
  Options options;
  bool json = false;
  std::string text;
};

// Fails for one that asks for nothing that there is; json tells all the same how to say so.
Result ReadCommandLine(int argc, char** argv, std::span<const Verb* const> verbs,
                       CommandLine& line);

}  // namespace kxtool
