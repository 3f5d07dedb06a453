#pragma once

#include <tool/kxwan/Failure.h>
#include <tool/kxwan/Report.h>

#include <span>
#include <string>
#include <variant>
#include <vector>

namespace kxtool {

// Everything that can be said on the command line. Each verb reads its own.
struct Options {
  std::string port;
  std::vector<std::string> commands;
  int timeoutSeconds = 10;
  unsigned long speed = 0;  // 0: to be found
  std::string apn;
  std::string types;
  std::string action;
  std::string pinFile;
  bool save = false;
  std::string file;
  bool force = false;
};

// One thing that can be said: "--name", or an argument without a name.
struct Option {
  using Place = std::variant<std::string Options::*, std::vector<std::string> Options::*,
                             int Options::*, unsigned long Options::*, bool Options::*>;

  const char* name;
  Place place;
  const char* help;
  bool required = false;
  std::string (*check)(const std::string& text) = nullptr;  // what is wrong with it, "" for nothing
  const char* oneOf = "";                                   // "this, that"; "" for any
  bool aboveZero = false;                                   // a number
  int most = 0;  // of a number from 1 on, whose default is told; 0 for any
};

// The PORT that most verbs begin with.
inline constexpr Option kPort = {
    .name = "PORT",
    .place = &Options::port,
    .help = "path of a serial port, or sim:NAME or sim:FILE.toml for a simulated device",
    .required = true};
inline constexpr Option kPortAlone[] = {kPort};

// One verb of the program.
struct Verb {
  const char* name;
  const char* summary;
  const char* example;
  std::span<const Option> options;
  Result (*run)(const Options& options, Report& report);
};

extern const Verb kPortsVerb;
extern const Verb kDetectVerb;
extern const Verb kAtVerb;
extern const Verb kInfoVerb;
extern const Verb kPrepareVerb;
extern const Verb kSimVerb;
extern const Verb kSpeedVerb;
extern const Verb kRecordVerb;
extern const Verb kDemoVerb;

}  // namespace kxtool
