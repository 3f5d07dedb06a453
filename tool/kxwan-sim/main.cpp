#include <profile/BuiltInProfiles.h>
#include <profile/Description.h>
#include <profile/Profile.h>
#include <simulator/Device.h>
#include <simulator/Trace.h>
#include <simulator/line/HostWatch.h>
#include <simulator/line/Loop.h>
#include <tool/kxwan-sim/FromLog.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int kFailed = 1;
constexpr int kWrongCall = 2;

struct Options {
  std::vector<std::string> profiles;
  std::vector<std::string> links;
  std::vector<std::string> faults;
  std::string onConnect;
  std::string describe;
  std::string log;
  std::string port;
  std::string write;
  uint64_t seed = 1;
  double seconds = 0;
  bool list = false;
  bool trace = false;
  bool raw = false;
  bool force = false;
};

struct Player {
  std::unique_ptr<kxsim::Trace> trace;
  std::unique_ptr<kxsim::Device> device;
};

kxsim::Loop* running = nullptr;

void StopRunning(int) {
  if (running != nullptr) running->Stop();
}

int Complain(const std::string& sentence, int status) {
  fprintf(stderr, "kxwan-sim: %s\n", sentence.c_str());
  return status;
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
      ->check(CLI::PositiveNumber);
  program.add_flag("--list", options.list, "List the built-in profiles");
  program.add_option("--describe", options.describe, "Say what a profile holds")
      ->type_name("PROFILE");
  program.add_flag("--trace", options.trace, "Print the dialogue on standard error");
  program.add_option("--seed", options.seed, "Make what is left to chance repeatable")
      ->type_name("N");
  program
      .add_option("--on-connect", options.onConnect,
                  "Whom a data call reaches; what is sent comes back by default")
      ->type_name("COMMAND");
  program
      .add_option("--fault", options.faults,
                  "KIND,KEY=VALUE,... such as late,ms=2000,at=3 (" + kxsim::FaultKinds() + ")")
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

int List() {
  for (const kxsim::BuiltInProfile* row = kxsim::kBuiltInProfiles; row->name != nullptr; ++row) {
    kxsim::Profile profile;
    std::string error;
    if (!kxsim::LoadProfile(row->name, profile, error)) return Complain(error, kFailed);
    printf("%-28s %s\n", row->name, profile.description.c_str());
  }
  return 0;
}

int Describe(const std::string& name) {
  kxsim::Profile profile;
  std::string error;
  if (!kxsim::LoadProfile(name, profile, error)) return Complain(error, kWrongCall);
  fputs(kxsim::Described(profile).c_str(), stdout);
  return 0;
}

bool ReadFaults(const Options& options, std::vector<kxsim::Fault>& faults, std::string& error) {
  for (const std::string& words : options.faults) {
    if (!kxsim::ParseFault(words, faults.emplace_back(), error)) return false;
  }
  return true;
}

kxsim::DeviceOptions OptionsOf(const Options& options, size_t index, Player& player) {
  kxsim::DeviceOptions result;
  result.rawTerminal = options.raw;
  result.seed = options.seed + index;
  result.onConnect = options.onConnect;
  if (index < options.links.size()) result.link = options.links[index];
  if (player.trace != nullptr) {
    result.onTraffic = [trace = player.trace.get()](kxsim::Traffic kind, std::string_view bytes) {
      trace->Note(kind, bytes);
    };
  }
  return result;
}

bool StartPlayers(const Options& options, const std::vector<kxsim::Profile>& profiles,
                  kxsim::Loop& loop, kxsim::HostWatch& hosts, std::vector<Player>& players,
                  std::string& error) {
  std::vector<kxsim::Fault> faults;
  if (!ReadFaults(options, faults, error)) return false;
  const bool several = profiles.size() > 1;
  for (size_t i = 0; i < profiles.size(); ++i) {
    Player& player = players.emplace_back();
    const std::string name = several ? profiles[i].name : "";
    if (options.trace) {
      player.trace = std::make_unique<kxsim::Trace>(stderr, isatty(STDERR_FILENO) == 1, name);
    }
    kxsim::DeviceOptions its = OptionsOf(options, i, player);
    its.faults = faults;
    player.device = std::make_unique<kxsim::Device>(loop, hosts, profiles[i], std::move(its));
    if (!player.device->Start(error)) return false;
    printf("%s%s%s\n", player.device->Path().c_str(), several ? " " : "", name.c_str());
  }
  fflush(stdout);
  return true;
}

int LoadProfiles(const Options& options, std::vector<kxsim::Profile>& profiles) {
  if (!options.log.empty()) {
    return kxsim::LoadLog(options.log, options.port, profiles.emplace_back());
  }
  std::string error;
  for (const std::string& name : options.profiles) {
    if (!kxsim::LoadProfile(name, profiles.emplace_back(), error)) {
      return Complain(error, kWrongCall);
    }
  }
  return 0;
}

int Play(const Options& options, const std::vector<kxsim::Profile>& profiles) {
  kxsim::Loop loop;
  kxsim::HostWatch hosts(loop);
  std::vector<Player> players;
  std::string error;
  if (!StartPlayers(options, profiles, loop, hosts, players, error)) {
    return Complain(error, kWrongCall);
  }
  running = &loop;
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) signal(number, StopRunning);
  if (options.seconds > 0) {
    const std::chrono::duration<double> time(options.seconds);
    loop.At(
        kxsim::Loop::Clock::now() + std::chrono::duration_cast<kxsim::Loop::Clock::duration>(time),
        [&loop] { loop.Stop(); });
  }
  loop.Run();
  running = nullptr;
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App program("Plays cellular modems on pseudo-terminals.", "kxwan-sim");
  Options options;
  AddOptions(program, options);
  AddLogOptions(program, options);
  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return program.exit(error) == 0 ? 0 : kWrongCall;
  }
  if (options.list) return List();
  if (!options.describe.empty()) return Describe(options.describe);
  if (options.profiles.empty() && options.log.empty()) {
    return Complain("name a profile; --list shows those that are built in", kWrongCall);
  }
  if (options.links.size() > std::max<size_t>(options.profiles.size(), 1)) {
    return Complain("there are more links than profiles", kWrongCall);
  }
  std::vector<kxsim::Profile> profiles;
  if (const int status = LoadProfiles(options, profiles)) return status;
  if (!options.write.empty()) {
    return kxsim::SaveProfile(profiles[0], options.write, options.force);
  }
  return Play(options, profiles);
}
