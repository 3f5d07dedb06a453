#pragma once

#include <string>
#include <vector>

#include <tool/kxwan/Report.h>
#include <tool/kxwan/Result.h>

namespace CLI {
class App;
}

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

// One verb of the program.
struct Verb {
  const char* name;
  const char* summary;
  const char* example;
  void (*addOptions)(CLI::App& app, Options& options);
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

// The PORT that most verbs begin with.
void AddPort(CLI::App& app, Options& options);

}  // namespace kxtool
