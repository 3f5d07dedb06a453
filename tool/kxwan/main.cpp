#include <KXWAN/KXWAN.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <iterator>
#include <map>

#include <tool/kxwan/Verb.h>

namespace kxtool {

void AddPort(CLI::App& app, Options& options) {
  app.add_option("PORT", options.port,
                 "path of a serial port, or sim:NAME or sim:FILE.toml for a simulated device")
      ->required();
}

namespace {

constexpr const Verb* kVerbs[] = {&kPortsVerb, &kDetectVerb,  &kAtVerb,
                                  &kInfoVerb,  &kPrepareVerb, &kSimVerb,
                                  &kSpeedVerb, &kRecordVerb,  &kDemoVerb};

void AddVerbs(CLI::App& app, Options& options, bool& json,
              std::map<CLI::App*, const Verb*>& verbs) {
  for (const Verb* verb : kVerbs) {
    CLI::App* command = app.add_subcommand(verb->name, verb->summary);
    command->footer(std::string("Example:\n  ") + verb->example);
    command->add_flag("--json", json, "give one JSON object and nothing else");
    command->set_version_flag("--version", KXWAN_TOOL_VERSION);
    if (verb->addOptions != nullptr) verb->addOptions(*command, options);
    verbs[command] = verb;
  }
}

// What CLI11 says of an unknown verb is that it did not expect an argument.
std::string Complaint(const CLI::App& app, const CLI::ParseError& error) {
  std::string text = error.what();
  if (!app.get_subcommands().empty()) return text + " (see kxwan --help)";
  text += ". The verbs are";
  for (const Verb* verb : kVerbs) text += std::string(" ") + verb->name;
  return text + ": see kxwan --help.";
}

// Help and the version are no errors.
int FinishParse(const CLI::App& app, const CLI::ParseError& error, bool json) {
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) return app.exit(error);
  return Report(json).Finish(WrongCall(Complaint(app, error)));
}

int Run(int argc, char** argv) {
  CLI::App app("Finds, opens and drives cellular modems over a serial line.", "kxwan");
  app.set_version_flag("--version", KXWAN_TOOL_VERSION);
  app.footer(
      "\"kxwan VERB --help\" tells more. Every exchange with a device is logged in "
      "/tmp/zrklog.txt.");
  app.require_subcommand(0, 1);  // checked below, so that an unknown verb is named
  Options options;
  bool json = false;
  std::map<CLI::App*, const Verb*> verbs;
  AddVerbs(app, options, json, verbs);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const bool wanted = std::find(argv, argv + argc, std::string("--json")) != argv + argc;
    return FinishParse(app, error, wanted);
  }
  Report report(json);
  if (app.get_subcommands().empty())
    return report.Finish(WrongCall("Say what to do: kxwan --help."));
  return report.Finish(verbs.at(app.get_subcommands().front())->run(options, report));
}

}  // namespace
}  // namespace kxtool

int main(int argc, char** argv) {
  // A reader that leaves ("kxwan info PORT | head -1") must not end the program with its port open:
  // the port's settings are put back when it closes.
  std::signal(SIGPIPE, SIG_IGN);
  return kxtool::Run(argc, argv);
}
