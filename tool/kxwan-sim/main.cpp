#include <profile/BuiltInProfiles.h>
#include <profile/Description.h>
#include <profile/Faults.h>
#include <profile/Profile.h>
#include <profile/Text.h>
#include <simulator/Device.h>
#include <simulator/Trace.h>
#include <simulator/line/HostWatch.h>
#include <simulator/line/Loop.h>
#include <tool/kxwan-sim/FromLog.h>
#include <tool/kxwan-sim/Options.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace kxsim {
namespace {

struct Player {
  std::unique_ptr<Trace> trace;
  std::unique_ptr<Device> device;
};

Loop* running = nullptr;

void StopRunning(int) {
  if (running != nullptr) running->Stop();
}

// Every sentence to the user goes this way: a log or a file may hold anything.
void Tell(const std::string& sentence) { fprintf(stderr, "%s\n", Printable(sentence).c_str()); }

Result List() {
  for (const BuiltInProfile* row = kBuiltInProfiles; row->name != nullptr; ++row) {
    Profile profile;
    if (Result failure = LoadProfile(row->name, profile)) return failure;
    printf("%-28s %s\n", row->name, Printable(profile.description).c_str());
  }
  return {};
}

Result Describe(const std::string& name) {
  Profile profile;
  if (Result failure = LoadProfile(name, profile)) return failure;
  fputs(Described(profile).c_str(), stdout);
  return {};
}

Result ReadFaults(const Options& options, std::vector<Fault>& faults) {
  for (const std::string& words : options.faults) {
    if (Result failure = ParseFault(words, faults.emplace_back())) return failure;
  }
  return {};
}

DeviceOptions OptionsOf(const Options& options, size_t index, const Player& player) {
  DeviceOptions result;
  result.rawTerminal = options.raw;
  result.seed = options.seed + index;
  result.onConnect = options.onConnect;
  if (index < options.links.size()) result.link = options.links[index];
  if (player.trace != nullptr) {
    result.onTraffic = [trace = player.trace.get()](Traffic kind, std::string_view bytes) {
      trace->Note(kind, bytes);
    };
  }
  return result;
}

Result StartPlayers(const Options& options, const std::vector<Profile>& profiles, Loop& loop,
                    HostWatch& hosts, std::vector<Player>& players) {
  std::vector<Fault> faults;
  if (Result failure = ReadFaults(options, faults)) return failure;
  const bool several = profiles.size() > 1;
  for (size_t i = 0; i < profiles.size(); ++i) {
    Player& player = players.emplace_back();
    const std::string name = several ? Printable(profiles[i].name) : "";
    if (options.trace) {
      player.trace = std::make_unique<Trace>(stderr, isatty(STDERR_FILENO) == 1, name);
    }
    DeviceOptions its = OptionsOf(options, i, player);
    its.faults = faults;
    player.device = std::make_unique<Device>(loop, hosts, profiles[i], std::move(its));
    std::string error;
    if (!player.device->Start(error)) return Failure{error};
    printf("%s%s%s\n", player.device->Path().c_str(), several ? " " : "", name.c_str());
  }
  fflush(stdout);
  return {};
}

Result Play(const Options& options, const std::vector<Profile>& profiles) {
  Loop loop;
  HostWatch hosts(loop);
  std::vector<Player> players;
  if (Result failure = StartPlayers(options, profiles, loop, hosts, players)) return failure;
  running = &loop;
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) signal(number, StopRunning);
  if (options.seconds > 0) {
    const std::chrono::duration<double> time(options.seconds);
    loop.At(Loop::Clock::now() + std::chrono::duration_cast<Loop::Clock::duration>(time),
            [&loop] { loop.Stop(); });
  }
  loop.Run();
  running = nullptr;
  return {};
}

Result PlayFiles(const Options& options) {
  std::vector<Profile> profiles;
  for (const std::string& name : options.profiles) {
    if (Result failure = LoadProfile(name, profiles.emplace_back())) return failure;
  }
  return Play(options, profiles);
}

Result PlayLog(const Options& options) {
  LogReading reading;
  Result failure = LoadLog(options.log, options.port, reading);
  for (const LogNote& note : reading.notes) {
    Tell(options.log + ":" + std::to_string(note.line) + ": " + note.text);
  }
  if (failure) return failure;
  if (options.write.empty()) return Play(options, {reading.profile});

  std::vector<Replacement> replaced;
  if (Result unsaved = SaveProfile(reading.profile, options.write, options.force, replaced)) {
    return unsaved;
  }
  for (const Replacement& each : replaced) {
    Tell(options.write + ": replaced by " + each.by + ": " + each.what +
         ", places: " + std::to_string(each.places));
  }
  if (replaced.empty()) Tell(options.write + ": nothing had to be replaced");
  return {};
}

Result Run(const Options& options) {
  if (!options.answer.empty()) {
    fputs(options.answer.c_str(), stdout);
    return {};
  }
  if (options.list) return List();
  if (!options.describe.empty()) return Describe(options.describe);
  return options.log.empty() ? PlayFiles(options) : PlayLog(options);
}

}  // namespace
}  // namespace kxsim

int main(int argc, char** argv) {
  kxsim::Options options;
  kxsim::Result failure = kxsim::ReadOptions(argc, argv, options);
  if (!failure) failure = kxsim::Run(options);
  if (!failure) return kxsim::kDone;
  kxsim::Tell("kxwan-sim: " + failure->sentence);
  return failure->status;
}
