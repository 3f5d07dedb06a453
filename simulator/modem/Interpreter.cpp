#include <profile/Text.h>
#include <simulator/line/LineEditor.h>
#include <simulator/modem/Commands.h>
#include <simulator/modem/Interpreter.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace kxsim {
namespace {

constexpr std::string_view kSpeedCommand = "AT+IPR=";
constexpr std::string_view kEchoOff = "ATE0V1";
constexpr std::string_view kConnect = "CONNECT";
constexpr std::string_view kRepeat = "A/";

// What ATV0 gives in place of a result.
struct NumericResult {
  std::string_view text;
  std::string_view number;
};

constexpr NumericResult kNumericResults[] = {
    {"OK", "0"},    {kConnect, "1"},      {"RING", "2"}, {"NO CARRIER", "3"},
    {"ERROR", "4"}, {"NO DIALTONE", "6"}, {"BUSY", "7"}, {"NO ANSWER", "8"},
};

std::string_view NumberOf(std::string_view result) {
  const auto* found =
      std::find_if(std::begin(kNumericResults), std::end(kNumericResults),
                   [=](const NumericResult& row) { return result.starts_with(row.text); });
  return found == std::end(kNumericResults) ? "" : found->number;
}

bool Succeeded(const Outcome& outcome) {
  return outcome.error == kNoError && outcome.result == "OK";
}

// Several commands on one line: their texts one after the other, the times added up.
void Append(Outcome& whole, Outcome part) {
  if (!whole.text.empty() && !part.text.empty()) part.text.insert(0, "\n\n");
  part.text.insert(0, whole.text);
  part.latencyMs += whole.latencyMs;
  part.newSpeed |= whole.newSpeed;
  if (part.call == CallAction::kNone) part.call = whole.call;
  whole = std::move(part);
}

}  // namespace

Interpreter::Interpreter(const Profile& profile, DataCall& call)
    : profile_(profile), script_(profile.replies), state_(profile, call) {}

void Interpreter::PowerUp() {
  SimCard card = state_.card;
  card.PowerUp();
  state_.Reset();
  state_.card = card;
  lastLine_.clear();
}

Outcome Interpreter::Execute(const std::string& line) {
  if (line.size() >= LineEditor::kLongestLine) return Refused();
  if (line != kRepeat) lastLine_ = line;
  if (lastLine_.empty()) return Done();
  return state_.awake ? RunLine(lastLine_) : WakeUp(lastLine_);
}

Outcome Interpreter::WakeUp(const std::string& line) {
  if (Normalised(line) != "AT+CFUN=1") return Refused();
  state_.awake = true;
  const Answer* answer = script_.Next(line);
  return answer == nullptr ? Done() : Play(*answer, line);
}

Outcome Interpreter::RunLine(const std::string& line) {
  if (const Answer* answer = script_.Next(line)) return Play(*answer, line);
  if (profile_.scripted) return RunScripted(line);
  std::vector<Invocation> commands;
  const bool good = SplitCommandLine(line, commands);
  Outcome whole;
  for (const Invocation& command : commands) {
    Append(whole, RunCommand(command));
    if (!Succeeded(whole)) return whole;
  }
  if (!good) Append(whole, Refused());
  return whole;
}

Outcome Interpreter::RunScripted(const std::string& line) {
  if (Normalised(line) != kEchoOff) return Refused();
  state_.settings[kEcho] = 0;
  return Done();
}

Outcome Interpreter::RunCommand(const Invocation& command) {
  const std::string line = "AT" + command.text;
  if (const Answer* answer = script_.Next(line)) return Play(*answer, line);
  return RunBuiltIn(command);
}

Outcome Interpreter::RunBuiltIn(const Invocation& command) {
  if (command.name.front() == 'S') return RunRegister(state_, command);
  const Command* known = FindCommand(state_, command.name);
  const bool extended = command.name.front() == '+';
  if (known == nullptr) return extended ? Refused(kNotSupported) : Refused();
  const Handler handlers[] = {known->execute, known->read, known->set, known->test};
  const Handler handler = handlers[static_cast<size_t>(command.form)];
  if (handler == nullptr) return extended ? Refused(kNotSupported) : Refused();
  return handler(state_, *known, command.parameters);
}

Outcome Interpreter::Play(const Answer& answer, const std::string& line) {
  Outcome outcome;
  outcome.text = answer.text;
  outcome.result = answer.result;
  outcome.raw = answer.raw;
  outcome.latencyMs = answer.latencyMs;
  outcome.gapMs = answer.gapMs;
  if (answer.result.starts_with(kConnect)) {
    outcome.call = CallAction::kConnect;
    outcome.abortable = true;
  }
  if (answer.result == "OK") CarryOutSilently(line, outcome);
  return outcome;
}

void Interpreter::CarryOutSilently(const std::string& line, Outcome& outcome) {
  if (profile_.scripted) return CarryOutScripted(Normalised(line), outcome);
  std::vector<Invocation> commands;
  SplitCommandLine(line, commands);
  for (const Invocation& each : commands) outcome.newSpeed |= RunBuiltIn(each).newSpeed;
}

void Interpreter::CarryOutScripted(const std::string& command, Outcome& outcome) {
  if (command == kEchoOff) state_.settings[kEcho] = 0;
  // Such a device is deaf at no speed, whatever it is told.
  const bool moves = profile_.line.moves && !profile_.line.autobaud;
  if (!moves || !command.starts_with(kSpeedCommand)) return;
  const std::optional<int> speed = ToNumber(std::string_view(command).substr(kSpeedCommand.size()));
  if (!speed) return;
  state_.speed = *speed;
  outcome.newSpeed = true;
}

std::string Interpreter::LineEnd() const {
  std::string end = profile_.line.lineEnd;
  const auto& registers = state_.settings.registers;
  for (char& byte : end) {
    if (byte == '\r') byte = static_cast<char>(registers[kEndOfLine]);
    if (byte == '\n') byte = static_cast<char>(registers[kLineFeed]);
  }
  return end;
}

std::string Interpreter::LineStart() const {
  return state_.settings[kVerbose] != 0 ? LineEnd() : "";
}

std::string Interpreter::ResultOf(const Outcome& outcome) const {
  const Settings& settings = state_.settings;
  if (settings[kQuiet] != 0) return "";
  const std::string result =
      outcome.error == kNoError ? outcome.result : ErrorResult(outcome.error, state_.errorReports);
  const std::string_view number = settings[kVerbose] != 0 ? "" : NumberOf(result);
  if (!number.empty()) {
    return std::string(number) + static_cast<char>(settings.registers[kEndOfLine]);
  }
  return result.empty() ? "" : LineStart() + result + LineEnd();
}

std::string Interpreter::TextOf(const Outcome& outcome) const {
  if (outcome.text.empty()) return "";
  const std::string end = LineEnd();
  std::string text = LineStart();
  for (const char byte : outcome.text) byte == '\n' ? text += end : text += byte;
  return text + end;
}

std::string Interpreter::Spoken(const Outcome& outcome) const {
  std::string bytes = TextOf(outcome) + ResultOf(outcome);
  if (profile_.line.nulBytes && !bytes.empty()) bytes.insert(bytes.begin(), '\0');
  return bytes;
}

}  // namespace kxsim
