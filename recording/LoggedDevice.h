#pragma once

#include <profile/Profile.h>

#include <cstddef>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kxsim {

// What a log tells of one command and its answer.
struct LoggedExchange {
  enum class Outcome { kOk, kError, kSilence };

  std::string command;  // without its "\r"
  Outcome outcome = Outcome::kOk;
  std::string text;  // of the reply, or the whole error result
  int speed = 0;     // of the line, when the log tells it
};

// Gathers the dialogue with one device and makes a profile of it.
class LoggedDevice {
 public:
  // Some thousand hours of polling; what comes later would be told by the same answers.
  static constexpr size_t kMostAnswers = 10'000;

  // False when it has no room left for more answers to the command.
  bool Add(LoggedExchange exchange);
  // Lines of the log that were taken. Those that follow one another make one stretch.
  void Took(size_t firstLine, size_t lastLine, bool sameStretch);

  size_t Exchanges() const { return exchanges_; }
  const std::vector<std::pair<size_t, size_t>>& Stretches() const { return stretches_; }
  Profile Build() const;

 private:
  void LearnSpeed(const LoggedExchange& exchange);
  void TakeEchoAway(LoggedExchange& exchange);
  bool HasFixedSpeed() const;

  std::vector<Reply> replies_;  // the texts as they were logged
  std::unordered_map<std::string, size_t> places_;
  std::vector<std::pair<size_t, size_t>> stretches_;
  size_t exchanges_ = 0;
  bool echo_ = false;
  bool echoOff_ = false;    // it was told to
  bool echoStays_ = false;  // and echoes all the same
  int firstSpeed_ = 0;      // at which it answered
  int newSpeed_ = 0;        // that it was just told
  bool moves_ = true;
  std::set<int> answeredAt_;
  std::set<int> silentAt_;
};

}  // namespace kxsim
