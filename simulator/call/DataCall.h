#pragma once

#include <simulator/call/EscapeDetector.h>
#include <simulator/call/FarEnd.h>
#include <simulator/line/Loop.h>

#include <chrono>
#include <string>
#include <string_view>

namespace kxsim {

// A device's data call: whom it reaches, and whether the line carries its data.
class DataCall {
 public:
  struct Listener {
    FarEnd::Receive receive;  // what the far end says, while the line carries data
    Loop::Callback escaped;   // the host takes the line back for commands, the call goes on
    Loop::Callback ended;     // the far end has gone
  };

  DataCall(Loop& loop, std::string command, Listener listener);

  // The line carries data from now on. False when nobody can be reached.
  bool Connect(int escapeCharacter, std::chrono::milliseconds guard);
  // The line carries data again, if the call is still up.
  void Resume();
  void End();

  bool IsUp() const { return state_ != State::kNone; }
  bool CarriesData() const { return state_ == State::kData; }

  void Send(std::string_view bytes);
  // Whether the far end can be sent more; what it is sent beyond that is kept.
  bool TakesMore() const { return farEnd_.Ready(); }
  // Holds back what the far end says, as it is while the line carries no data.
  void HoldBack(bool hold) { farEnd_.Pause(hold || !CarriesData()); }

 private:
  enum class State { kNone, kHeld, kData };

  const Listener listener_;
  FarEnd farEnd_;
  EscapeDetector escape_;
  State state_ = State::kNone;
};

}  // namespace kxsim
