#pragma once

#include <profile/Profile.h>
#include <simulator/call/EscapeDetector.h>
#include <simulator/call/FarEnd.h>
#include <simulator/line/FaultSet.h>
#include <simulator/line/HostWatch.h>
#include <simulator/line/LineEditor.h>
#include <simulator/line/Link.h>
#include <simulator/line/Loop.h>
#include <simulator/line/PseudoTerminal.h>
#include <simulator/line/Sender.h>
#include <simulator/modem/Interpreter.h>

#include <deque>
#include <functional>
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
  // Lines that came while the device was busy; more are lost.
  static constexpr size_t kMostLines = 64;
  // What may wait for a host that does not read before the device stops listening to its data.
  static constexpr size_t kMostUnread = 64 * 1024;

  bool HearsHost() const;
  bool Echoes() const;
  void Tell(Traffic kind, std::string_view bytes) const;
  void OnReady(short events);
  void OnBytes(std::string_view bytes);
  void OnTyped(std::string_view bytes);
  void OnLine(std::string line);
  void OnHostGone();
  void UpdateEvents();

  void RunNextLine();
  Delivery Prepared(const Outcome& outcome);
  void Say(const Outcome& outcome);
  void Finish(const Outcome& outcome, const Delivery& delivery);
  void FinishCall(CallAction action);
  void Unasked(const std::string& text, std::chrono::milliseconds pause);
  void Flood(const std::string& text, size_t left, bool endless);
  void GoAway(int backAfterMs);
  void Abort();

  void Connect();
  void LeaveData(const char* result);
  void EndCall();
  void ToHost(std::string bytes);

  Loop& loop_;
  HostWatch& hosts_;
  const Profile profile_;
  const DeviceOptions options_;
  PseudoTerminal terminal_;
  Link link_;
  Sender sender_;
  Interpreter interpreter_;
  LineEditor editor_;
  FaultSet faults_;
  FarEnd farEnd_;
  EscapeDetector escape_;
  std::deque<std::string> lines_;
  int watch_ = -1;
  int speed_ = 0;           // 0: any that the profile lists
  bool busy_ = false;       // with a command line
  bool abortable_ = false;  // what it is busy with
  bool data_ = false;       // the line carries data
  std::optional<Loop::TimerKey> comeBack_;
};

}  // namespace kxsim
