#include <tool/kxwan/CommandLine.h>

#include <tool/kxwan/Text.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <sstream>

namespace kxtool {
namespace {

using Commands = std::map<const CLI::App*, const Verb*>;

CLI::Option* AddTo(CLI::App& app, const Option& row, bool& flag) {
  return app.add_flag(row.name, flag, row.help);
}

template <typename Type>
CLI::Option* AddTo(CLI::App& app, const Option& row, Type& value) {
  return app.add_option(row.name, value, row.help);
}

void AddOption(CLI::App& app, const Option& row, Options& options) {
  CLI::Option* option =
      std::visit([&](auto place) { return AddTo(app, row, options.*place); }, row.place);
  option->required(row.required);
  if (row.check != nullptr) option->check(row.check);
  if (*row.oneOf != '\0') option->check(CLI::IsMember(SplitList(row.oneOf)));
  if (row.aboveZero) option->check(CLI::PositiveNumber);
  if (row.most > 0) option->check(CLI::Range(1, row.most))->capture_default_str();
}

void AddVerb(CLI::App& app, const Verb& verb, CommandLine& line, Commands& commands) {
  CLI::App* command = app.add_subcommand(verb.name, verb.summary);
  command->footer(std::string("Example:\n  ") + verb.example);
  command->add_flag("--json", line.json, "give one JSON object and nothing else");
  command->set_version_flag("--version", KXWAN_TOOL_VERSION);
  for (const Option& row : verb.options) AddOption(*command, row, line.options);
  commands[command] = &verb;
}

// What CLI11 says of an unknown verb is that it did not expect an argument.
std::string Complaint(const CLI::App& app, const CLI::ParseError& error,
                      std::span<const Verb* const> verbs) {
  std::string text = error.what();
  if (!app.get_subcommands().empty()) return text + " (see kxwan --help)";
  text += ". The verbs are";
  for (const Verb* verb : verbs) text += std::string(" ") + verb->name;
  return text + ": see kxwan --help.";
}

// Help and the version are no errors: they are a text to be shown.
bool IsAskedText(const CLI::App& app, const CLI::ParseError& error, std::string& text) {
  if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::Success)) return false;
  std::ostringstream shown;
  app.exit(error, shown, shown);
  text = shown.str();
  return true;
}

}  // namespace

Result ReadCommandLine(int argc, char** argv, std::span<const Verb* const> verbs,
                       CommandLine& line) {
  CLI::App app("Finds, opens and drives cellular modems over a serial line.", "kxwan");
  app.set_version_flag("--version", KXWAN_TOOL_VERSION);
  app.footer(
      "\"kxwan VERB --help\" tells more. Every exchange with a device is logged in "
      "/tmp/zrklog.txt.");
  app.require_subcommand(0, 1);  // checked below, so that an unknown verb is named
  Commands commands;
  for (const Verb* verb : verbs) AddVerb(app, *verb, line, commands);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    line.json = std::find(argv, argv + argc, std::string("--json")) != argv + argc;
    if (IsAskedText(app, error, line.text)) return {};
    return WrongCall(Complaint(app, error, verbs));
  }
  if (app.get_subcommands().empty()) return WrongCall("Say what to do: kxwan --help.");
  line.verb = commands.at(app.get_subcommands().front());
  return {};
}

}  // namespace kxtool
