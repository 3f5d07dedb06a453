#include <simulator/Device.h>

namespace kxsim {
namespace {

using std::chrono::milliseconds;

constexpr size_t kFloodPiece = 4096;
constexpr milliseconds kFloodPause{1};

}  // namespace

void Device::RunNextLine() {
  if (busy_ || lines_.empty() || data_) return;
  const std::string line = std::move(lines_.front());
  lines_.pop_front();
  busy_ = true;
  Say(interpreter_.Execute(line));
}

Delivery Device::Prepared(const Outcome& outcome) {
  Delivery delivery;
  delivery.pieces = outcome.raw;
  if (delivery.pieces.empty()) delivery.pieces.push_back(interpreter_.Spoken(outcome));
  delivery.pause = milliseconds(outcome.latencyMs + profile_.line.latencyMs);
  delivery.pieceGap = milliseconds(outcome.gapMs);
  // The host was heard, so its speed is the line's, also of a device that takes any.
  faults_.Spoil(delivery, terminal_.HostSpeed());
  return delivery;
}

void Device::Say(const Outcome& outcome) {
  Delivery delivery = Prepared(outcome);
  abortable_ = outcome.abortable;
  std::chrono::nanoseconds pause = delivery.pause;
  for (std::string& piece : delivery.pieces) {
    sender_.Send({std::move(piece), pause, delivery.smallestPiece, delivery.smallestGap});
    pause = delivery.pieceGap;
  }
  delivery.pieces.clear();
  sender_.Send({.sent = [this, outcome, delivery] { Finish(outcome, delivery); }});
}

void Device::Finish(const Outcome& outcome, const Delivery& delivery) {
  busy_ = abortable_ = false;
  if (outcome.newSpeed) speed_ = interpreter_.State().speed;
  if (delivery.hangUp) {
    // Not from inside the sender, which is about to be cleared.
    loop_.Post([this, back = delivery.backAfterMs] { GoAway(back); });
    return;
  }
  FinishCall(outcome.call);
  if (!delivery.after.empty()) sender_.Send({delivery.after, delivery.afterPause});
  if (delivery.flood) Flood(delivery.floodText, delivery.floodBytes, delivery.floodBytes == 0);
  RunNextLine();
}

void Device::FinishCall(CallAction action) {
  switch (action) {
    case CallAction::kNone:
      return;
    case CallAction::kConnect:
      return Connect();
    case CallAction::kResume:
      data_ = true;
      return;
    case CallAction::kEnd:
      return EndCall();
  }
}

// Something that no command has asked for, in the form that the host has chosen.
void Device::Unasked(const std::string& result, milliseconds pause) {
  Outcome outcome;
  outcome.result = result;
  sender_.Send({interpreter_.Spoken(outcome), pause});
}

void Device::Flood(const std::string& text, size_t left, bool endless) {
  if (left == 0 && !endless) return;
  std::string piece;
  while (piece.size() < kFloodPiece && (endless || piece.size() < left)) piece += text;
  left -= std::min(left, piece.size());
  sender_.Send({.bytes = std::move(piece),
                .pause = kFloodPause,
                .sent = [this, text, left, endless] { Flood(text, left, endless); }});
}

void Device::Abort() {
  sender_.Clear();
  busy_ = abortable_ = false;
  Unasked("NO CARRIER", {});
  RunNextLine();
}

void Device::Connect() {
  ModemState& state = interpreter_.State();
  if (!farEnd_.Start()) return Unasked("NO CARRIER", {});
  state.online = data_ = true;
  lines_.clear();
  const auto& registers = state.settings.registers;
  escape_.Start(registers[kEscapeCharacter], milliseconds(registers[kGuardTime] * 20));
}

void Device::LeaveData(const char* result) {
  escape_.Disarm();
  data_ = false;
  interpreter_.State().online = false;
  Unasked(result, {});
}

void Device::EndCall() {
  escape_.Disarm();
  farEnd_.Stop();
  data_ = false;
  interpreter_.State().online = false;
}

void Device::ToHost(std::string bytes) {
  // While the host has taken the line back for commands, data has nowhere to go.
  if (!data_) return;
  sender_.Send({std::move(bytes)});
  UpdateEvents();
}

}  // namespace kxsim
