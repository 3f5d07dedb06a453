#include <tool/kxwan-sim/Options.h>

#include <profile/Faults.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>

namespace kxsim {
namespace {

// CLI11 says of a number that does not fit how far its type reaches, to the last digit.
template <typename Number>
CLI::Validator Within(Number low, Number high, const char* expected) {
  const auto check = [=](const std::string& text) -> std::string {
    Number number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, failed] = std::from_chars(text.data(), end, number);
    const bool fits = failed == std::errc() && stop == end && number >= low && number <= high;
    return fits ? "" : std::string("expected ") + expected;
  };
  return {check, ""};
}

void AddOptions(CLI::App& program, Options& options) {
  program.add_option("PROFILE", options.profiles, "Names of built-in profiles, or files")
      ->type_name("");
  program
      .add_option("--link", options.links, "Keep a symbolic link to the terminal, one a profile")
      ->allow_extra_args(false)
      ->type_name("PATH");
  program.add_option("--for", options.seconds, "Stop after this many seconds")
      ->type_name("SECONDS")
      ->check(Within(0.001, 1e9, "seconds from 0.001 to 1000000000"));
  program.add_flag("--list", options.list, "List the built-in profiles");
  program.add_option("--describe", options.describe, "Say what a profile holds")
      ->type_name("PROFILE");
  program.add_flag("--trace", options.trace, "Print the dialogue on standard error");
  program.add_option("--seed", options.seed, "Make what is left to chance repeatable")
      ->type_name("N")
      ->check(Within<uint64_t>(0, UINT64_MAX, "a whole number from 0 to 18446744073709551615"));
  program
      .add_option("--on-connect", options.onConnect,
                  "Whom a data call reaches; what is sent comes back by default")
      ->type_name("COMMAND");
  program
      .add_option("--fault", options.faults,
                  "KIND,KEY=VALUE,... such as late,ms=2000,at=3; see below")
      ->allow_extra_args(false)
      ->type_name("FAULT");
  program.add_flag("--raw", options.raw, "Start with a raw terminal and not the system's settings");
}

void AddLogOptions(CLI::App& program, Options& options) {
  CLI::Option* log =
      program.add_option("--from-log", options.log, "Play the device that a debug log tells of")
          ->type_name("LOG")
          ->excludes(program.get_option("PROFILE"));
  program.add_option("--port", options.port, "Whose dialogue, of a log that tells of several")
      ->type_name("PORT")
      ->needs(log);
  CLI::Option* write =
      program
          .add_option(
              "--write", options.write,
              "Save the log's device as a profile without personal numbers, and play nothing")
          ->type_name("FILE")
          ->needs(log);
  program.add_flag("--force", options.force, "Overwrite the file")->needs(write);
}

bool AsksNothing(const Options& options) {
  return !options.list && options.describe.empty() && options.profiles.empty() &&
         options.log.empty();
}

}  // namespace

Result ReadOptions(int argc, const char* const* argv, Options& options) {
  CLI::App program("Plays cellular modems on pseudo-terminals.", "kxwan-sim");
  program.set_version_flag("--version", "kxwan-sim " KXWAN_TOOL_VERSION);
  program.footer(
      "Kinds of FAULT; at=: for which reply, counted from 1 (any); rate=: the chance (1)\n" +
      FaultHelp());
  AddOptions(program, options);
  AddLogOptions(program, options);
  try {
    program.parse(argc, argv);
  } catch (const CLI::CallForVersion& version) {
    options.answer = std::string(version.what()) + "\n";
    return {};
  } catch (const CLI::Success&) {
    options.answer = program.help();
    return {};
  } catch (const CLI::ParseError& error) {
    return Failure{std::string(error.what()) + " (see kxwan-sim --help)"};
  }
  if (AsksNothing(options)) {
    return Failure{"name a profile; --list shows those that are built in"};
  }
  if (options.links.size() > std::max<size_t>(options.profiles.size(), 1)) {
    return Failure{"there are more links than profiles"};
  }
  return {};
}

}  // namespace kxsim
