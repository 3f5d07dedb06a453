#include <simulator/call/DataCall.h>

#include <utility>

namespace kxsim {

DataCall::DataCall(Loop& loop, std::string command, Listener listener)
    : listener_(std::move(listener)),
      farEnd_(
          loop, std::move(command),
          [this](std::string bytes) {
            // While the host has the line for commands, data has nowhere to go.
            if (CarriesData()) listener_.receive(std::move(bytes));
          },
          [this] {
            End();
            listener_.ended();
          }),
      escape_(loop, [this] {
        state_ = State::kHeld;
        listener_.escaped();
      }) {}

bool DataCall::Connect(int escapeCharacter, std::chrono::milliseconds guard) {
  if (!farEnd_.Start()) return false;
  state_ = State::kData;
  escape_.Start(escapeCharacter, guard);
  return true;
}

void DataCall::Resume() {
  if (IsUp()) state_ = State::kData;
}

void DataCall::End() {
  escape_.Disarm();
  farEnd_.Stop();
  state_ = State::kNone;
}

void DataCall::Send(std::string_view bytes) {
  escape_.Feed(bytes);
  farEnd_.Send(bytes);
}

}  // namespace kxsim
