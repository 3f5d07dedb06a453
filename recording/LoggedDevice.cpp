#include <recording/LoggedDevice.h>

#include <profile/CommandLine.h>
#include <profile/Text.h>
#include <profile/UsualSpeed.h>

#include <algorithm>
#include <string_view>

namespace kxsim {
namespace {

constexpr std::string_view kProbe = "ATE0V1";
constexpr std::string_view kSpeedCommand = "AT+IPR=";
constexpr size_t kMostStretches = 100;

bool IsSilent(const Answer& answer) { return answer.text.empty() && answer.result.empty(); }

Answer AsLogged(LoggedExchange& exchange) {
  switch (exchange.outcome) {
    case LoggedExchange::Outcome::kOk:
      return {.text = std::move(exchange.text)};
    case LoggedExchange::Outcome::kError:
      return {.result = std::move(exchange.text)};
    default:
      return {.result = ""};
  }
}

void ReplaceAll(std::string& text, std::string_view what, std::string_view by) {
  std::string result;
  size_t from = 0;
  for (size_t at = text.find(what); at != text.npos; at = text.find(what, from)) {
    result.append(text, from, at - from).append(by);
    from = at + what.size();
  }
  text = result.append(text, from);
}

// The lines of a text are parted by "\n" in a profile. What cannot be said like that is sent as it
// was logged.
void PartLines(Answer& answer, const std::string& lineEnd) {
  std::string parted = answer.text;
  ReplaceAll(parted, lineEnd, "\n");
  std::string spoken = parted;
  ReplaceAll(spoken, "\n", lineEnd);
  if (spoken == answer.text) {
    answer.text = std::move(parted);
  } else {
    answer = {.result = "", .raw = {"\r\n" + answer.text + "\r\n\r\nOK\r\n"}};
  }
}

// Most devices end a line with "\r\n".
std::string LineEndOf(const std::vector<Reply>& replies) {
  for (const Reply& reply : replies) {
    for (const Answer& answer : reply.answers) {
      if (answer.text.find("\r\r\n") != std::string::npos) return "\r\r\n";
    }
  }
  return "\r\n";
}

// The last answer is given for ever after, so once is enough.
void DropRepeatedEnd(std::vector<Answer>& answers) {
  while (answers.size() > 1 && answers.back() == answers[answers.size() - 2]) {
    answers.pop_back();
  }
}

}  // namespace

bool LoggedDevice::Add(LoggedExchange exchange) {
  LearnSpeed(exchange);
  TakeEchoAway(exchange);
  const auto [place, isNew] = places_.emplace(Normalised(exchange.command), replies_.size());
  if (isNew) replies_.push_back({exchange.command, {}});
  std::vector<Answer>& answers = replies_[place->second].answers;
  if (answers.size() >= kMostAnswers) return false;
  answers.push_back(AsLogged(exchange));
  ++exchanges_;
  return true;
}

void LoggedDevice::Took(size_t firstLine, size_t lastLine, bool sameStretch) {
  if (stretches_.empty() || (!sameStretch && stretches_.size() < kMostStretches)) {
    stretches_.emplace_back(firstLine, lastLine);
  }
  stretches_.back().second = lastLine;
}

// The probe follows every change of speed, and that is where the log tells the speed of the line.
void LoggedDevice::LearnSpeed(const LoggedExchange& exchange) {
  const bool silent = exchange.outcome == LoggedExchange::Outcome::kSilence;
  const std::string command = Normalised(exchange.command);
  const int told = std::exchange(newSpeed_, 0);
  if (command == kProbe) {
    if (told != 0 && silent) moves_ = false;
    if (told != 0 && !silent) answeredAt_.insert(told);
    if (!IsUsualSpeed(exchange.speed)) return;
    (silent ? silentAt_ : answeredAt_).insert(exchange.speed);
    if (!silent && firstSpeed_ == 0) firstSpeed_ = exchange.speed;
  } else if (command.starts_with(kSpeedCommand) &&
             exchange.outcome == LoggedExchange::Outcome::kOk) {
    const int speed = ToNumber(std::string_view(command).substr(kSpeedCommand.size())).value_or(0);
    if (IsUsualSpeed(speed)) newSpeed_ = speed;
  }
}

// An echo stands in front of the reply, as the command and its "\r".
void LoggedDevice::TakeEchoAway(LoggedExchange& exchange) {
  if (exchange.outcome != LoggedExchange::Outcome::kOk) return;
  const std::string& command = exchange.command;
  std::string& text = exchange.text;
  if (!command.empty() && (text == command || text.starts_with(command + '\r'))) {
    (echoOff_ ? echoStays_ : echo_) = true;
    text.erase(0, command.size());
    text.erase(0, text.find_first_not_of("\r\n"));
  }
  if (Normalised(command) == kProbe) echoOff_ = true;
}

// At its own speed a device answers the probe. Where it is known to have been silent at another,
// every silence is that of a wrong speed.
bool LoggedDevice::HasFixedSpeed() const {
  return firstSpeed_ != 0 && std::any_of(silentAt_.begin(), silentAt_.end(),
                                         [this](int speed) { return speed != firstSpeed_; });
}

Profile LoggedDevice::Build() const {
  Profile profile;
  profile.description = "Played from a log";
  profile.scripted = true;
  profile.replies = replies_;
  LineSettings& line = profile.line;
  line.echo = echo_ || echoStays_;
  if (echoStays_) profile.faults.emplace_back().kind = "echo";
  line.moves = moves_;
  line.autobaud = !HasFixedSpeed();
  line.lineEnd = LineEndOf(replies_);
  if (!line.autobaud) {
    line.baud = firstSpeed_;
    line.speeds.assign(answeredAt_.begin(), answeredAt_.end());
  }
  for (Reply& reply : profile.replies) {
    if (!line.autobaud && Normalised(reply.command) == kProbe) {
      std::erase_if(reply.answers, IsSilent);
    }
    DropRepeatedEnd(reply.answers);
    for (Answer& answer : reply.answers) PartLines(answer, line.lineEnd);
  }
  std::erase_if(profile.replies, [](const Reply& reply) { return reply.answers.empty(); });
  return profile;
}

}  // namespace kxsim
