#include <simulator/CommandMode.h>

#include <chrono>
#include <utility>

namespace kxsim {

using std::chrono::milliseconds;

CommandMode::CommandMode(const Profile& profile, const PseudoTerminal& terminal, Sender& sender,
                         FaultSet& faults, DataCall& call, Listener listener)
    : profile_(profile),
      terminal_(terminal),
      sender_(sender),
      faults_(faults),
      call_(call),
      listener_(std::move(listener)),
      replies_(terminal, sender, faults),
      interpreter_(profile, call),
      speed_(interpreter_.State().speed) {}

bool CommandMode::Echoes() const {
  return interpreter_.State().settings[kEcho] != 0 || faults_.EchoStays();
}

std::optional<std::string> CommandMode::Edited(char byte) {
  const auto& registers = interpreter_.State().settings.registers;
  editor_.endOfLine = static_cast<char>(registers[kEndOfLine]);
  editor_.backspace = static_cast<char>(registers[kBackspace]);
  return editor_.Feed(byte);
}

void CommandMode::Take(std::string_view bytes) {
  // Deliberate: a terminal that echoes by itself would hand our echo back as the next command.
  const bool mayEcho = !terminal_.HostEchoes();
  std::string echo;
  for (const char byte : bytes) {
    if (busy_ && abortable_ && byte != '\n') Abort();
    if (mayEcho && Echoes()) echo += byte;
    std::optional<std::string> line = Edited(byte);
    if (!line) continue;
    sender_.Send({std::exchange(echo, "")});
    if (listener_.onCommand) listener_.onCommand(*line);
    if (lines_.size() < kMostLines) lines_.push_back(std::move(*line));
    RunNextLine();
  }
  sender_.Send({std::move(echo)});
}

void CommandMode::RunNextLine() {
  if (busy_ || lines_.empty() || call_.CarriesData()) return;
  const std::string line = std::move(lines_.front());
  lines_.pop_front();
  busy_ = true;
  const Outcome outcome = interpreter_.Execute(line);
  abortable_ = outcome.abortable;
  Delivery delivery;
  delivery.pieces = outcome.raw;
  if (delivery.pieces.empty()) delivery.pieces.push_back(interpreter_.Spoken(outcome));
  delivery.pause = milliseconds(outcome.latencyMs + profile_.line.latencyMs);
  delivery.pieceGap = milliseconds(outcome.gapMs);
  replies_.Send(std::move(delivery),
                [this, outcome](const Delivery& gone) { Finish(outcome, gone); });
}

void CommandMode::Finish(const Outcome& outcome, const Delivery& delivery) {
  busy_ = abortable_ = false;
  if (outcome.newSpeed) speed_ = interpreter_.State().speed;
  if (delivery.hangUp) return listener_.onHangUp(delivery.backAfterMs);
  UpdateCall(outcome.call);
  replies_.SendRest(delivery);
  RunNextLine();
}

void CommandMode::UpdateCall(CallAction action) {
  if (action == CallAction::kConnect) Connect();
  if (action == CallAction::kResume) call_.Resume();
  // What was typed behind the command that gave the line away is no command.
  if (call_.CarriesData()) lines_.clear();
}

void CommandMode::Connect() {
  const auto& registers = interpreter_.State().settings.registers;
  // The guard time counts fiftieths of a second.
  const milliseconds guard(registers[kGuardTime] * 20);
  if (!call_.Connect(registers[kEscapeCharacter], guard)) Report("NO CARRIER");
}

void CommandMode::Report(const std::string& result) {
  sender_.Send({interpreter_.Spoken({.result = result})});
}

void CommandMode::Abort() {
  sender_.Clear();
  busy_ = abortable_ = false;
  Report("NO CARRIER");
  RunNextLine();
}

void CommandMode::Clear() {
  lines_.clear();
  editor_.Clear();
  busy_ = abortable_ = false;
}

void CommandMode::PowerUp() {
  interpreter_.PowerUp();
  speed_ = interpreter_.State().speed;
}

}  // namespace kxsim
