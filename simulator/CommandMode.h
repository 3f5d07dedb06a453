#pragma once

#include <profile/Profile.h>
#include <simulator/ReplySender.h>
#include <simulator/call/DataCall.h>
#include <simulator/line/FaultSet.h>
#include <simulator/line/LineEditor.h>
#include <simulator/line/PseudoTerminal.h>
#include <simulator/line/Sender.h>
#include <simulator/modem/Interpreter.h>

#include <deque>
#include <functional>
#include <string>
#include <string_view>

namespace kxsim {

// A device that takes commands: echoes what the host types, carries its lines out one after the
// other and answers them.
class CommandMode {
 public:
  struct Listener {
    std::function<void(const std::string& line)> onCommand;  // may be empty
    // A fault takes the device away; for good when it comes back after 0 ms.
    std::function<void(int backAfterMs)> onHangUp;
  };

  CommandMode(const Profile& profile, const PseudoTerminal& terminal, Sender& sender,
              FaultSet& faults, DataCall& call, Listener listener);

  // What the host has typed.
  void Take(std::string_view bytes);
  // Sends a result that no command has asked for, in the form that the host has chosen.
  void Report(const std::string& result);
  // Forgets what was typed and what is being carried out.
  void Clear();
  // Starts the device anew, with the card that is in it.
  void PowerUp();

  // The speed at which the device listens; 0 for any that its profile lists.
  int Speed() const { return speed_; }
  // Whether a host that goes takes the call with it: AT&D.
  bool HeedsHost() const { return interpreter_.State().settings[kTerminalReady] != 0; }

 private:
  // Lines that came while the device was busy; more are lost.
  static constexpr size_t kMostLines = 64;

  bool Echoes() const;
  std::optional<std::string> Edited(char byte);
  void RunNextLine();
  void Finish(const Outcome& outcome, const Delivery& delivery);
  void UpdateCall(CallAction action);
  void Connect();
  void Abort();

  const Profile& profile_;
  const PseudoTerminal& terminal_;
  Sender& sender_;
  const FaultSet& faults_;
  DataCall& call_;
  const Listener listener_;
  ReplySender replies_;
  Interpreter interpreter_;
  LineEditor editor_;
  std::deque<std::string> lines_;
  int speed_;
  bool busy_ = false;       // with a command line
  bool abortable_ = false;  // what it is busy with
};

}  // namespace kxsim
