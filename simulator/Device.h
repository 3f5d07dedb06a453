#pragma once

#include <profile/Profile.h>
#include <simulator/CommandMode.h>
#include <simulator/call/DataCall.h>
#include <simulator/line/FaultSet.h>
#include <simulator/line/HostWatch.h>
#include <simulator/line/Link.h>
#include <simulator/line/Loop.h>
#include <simulator/line/PseudoTerminal.h>
#include <simulator/line/Sender.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kxsim {

// What a trace is told.
enum class Traffic { kFromHost, kToHost, kNote };

struct DeviceOptions {
  bool rawTerminal = false;   // the terminal starts raw and not with the system's settings
  uint64_t seed = 1;          // of everything that is left to chance
  std::string link;           // a symbolic link to keep; empty for none
  std::string onConnect;      // the command at the far end of a data call; empty for an echo
  std::vector<Fault> faults;  // besides those of the profile
  std::function<void(const std::string& line)> onCommand;  // each command line as it arrives
  std::function<void(Traffic kind, std::string_view bytes)> onTraffic;
};

// One device on a pseudo-terminal of its own, served by a loop.
class Device {
 public:
  Device(Loop& loop, HostWatch& hosts, Profile profile, DeviceOptions options);
  ~Device();
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  // False with a sentence in error.
  bool Start(std::string& error);
  const std::string& Path() const { return terminal_.Path(); }
  void HangUp();

 private:
  // What may wait for a host that does not read before the device stops listening to its data.
  static constexpr size_t kMostUnread = 64 * 1024;

  bool HearsHost() const;
  void Tell(Traffic kind, std::string_view bytes) const;
  void OnReady(short events);
  void OnBytes(std::string_view bytes);
  void OnHostGone();
  void Filter(std::string& bytes) const;
  void UpdateEvents();
  void GoAway(int backAfterMs);

  Loop& loop_;
  HostWatch& hosts_;
  const Profile profile_;
  const DeviceOptions options_;
  PseudoTerminal terminal_;
  Link link_;
  Sender sender_;
  FaultSet faults_;
  DataCall call_;
  CommandMode commands_;
  int watch_ = -1;
  std::optional<Loop::TimerKey> comeBack_;
};

}  // namespace kxsim
