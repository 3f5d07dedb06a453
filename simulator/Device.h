#pragma once

#include <simulator/Interpreter.h>
#include <simulator/LineEditor.h>
#include <simulator/Loop.h>
#include <simulator/Profile.h>
#include <simulator/PseudoTerminal.h>
#include <simulator/Sender.h>

#include <deque>
#include <functional>
#include <string>
#include <string_view>

namespace kxsim {

struct DeviceOptions {
  bool rawTerminal = false;  // the terminal starts raw and not with the system's settings
  std::function<void(const std::string& line)> onCommand;  // each command line as it arrives
};

// One device on a pseudo-terminal of its own, served by a loop.
class Device {
 public:
  Device(Loop& loop, Profile profile, DeviceOptions options);
  ~Device();
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  // False with errno set when the system gives no terminal.
  bool Start();
  const std::string& Path() const { return terminal_.Path(); }
  void HangUp();

 private:
  // Lines that came while the device was busy; more are lost.
  static constexpr size_t kMostLines = 64;

  void OnReady(short events);
  void OnBytes(std::string_view bytes);
  void OnLine(std::string line);
  void RunNextLine();
  void Say(const Outcome& outcome);
  void WatchTerminal();
  bool HearsHost() const;

  Loop& loop_;
  const Profile profile_;
  const DeviceOptions options_;
  PseudoTerminal terminal_;
  Sender sender_;
  Interpreter interpreter_;
  LineEditor editor_;
  std::deque<std::string> lines_;
  int speed_;
  bool busy_ = false;
};

}  // namespace kxsim
