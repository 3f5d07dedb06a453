#include <simulator/Interpreter.h>

#include <charconv>
#include <string_view>

namespace kxsim {
namespace {

constexpr std::string_view kSpeedCommand = "AT+IPR=";

Outcome FromAnswer(const Answer& answer) {
  Outcome outcome;
  outcome.text = answer.text;
  outcome.result = answer.result;
  outcome.raw = answer.raw;
  outcome.latencyMs = answer.latencyMs;
  outcome.gapMs = answer.gapMs;
  return outcome;
}

int SpeedAskedFor(const std::string& command) {
  if (!command.starts_with(kSpeedCommand)) return 0;
  int speed = 0;
  std::from_chars(command.data() + kSpeedCommand.size(), command.data() + command.size(), speed);
  return speed;
}

}  // namespace

Interpreter::Interpreter(const Profile& profile) : profile_(profile), script_(profile.replies) {
  dialogue_.echo = profile.line.echo;
}

Outcome Interpreter::Execute(const std::string& line) { return ExecuteScripted(line); }

Outcome Interpreter::ExecuteScripted(const std::string& line) {
  const std::string command = Normalised(line);
  Outcome outcome;
  if (const Answer* answer = script_.Next(line)) {
    outcome = FromAnswer(*answer);
  } else if (command != "ATE0V1") {
    outcome.result = "ERROR";
  }
  if (outcome.result != "OK") return outcome;
  if (command == "ATE0V1") dialogue_.echo = false;
  if (profile_.line.moves) outcome.newSpeed = SpeedAskedFor(command);
  return outcome;
}

std::string Interpreter::Spoken(const Outcome& outcome) const {
  const std::string& end = profile_.line.lineEnd;
  std::string bytes = profile_.line.nulBytes ? std::string(1, '\0') : std::string();
  if (!outcome.text.empty()) {
    bytes += end;
    for (const char byte : outcome.text) byte == '\n' ? bytes += end : bytes += byte;
    bytes += end;
  }
  if (!outcome.result.empty()) bytes += end + outcome.result + end;
  return bytes;
}

}  // namespace kxsim
