#pragma once

#include <recording/LogNotes.h>
#include <recording/LogRecords.h>
#include <recording/LoggedDevice.h>

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace kxsim {

// Puts the records of a log together to exchanges, each with the port that it was on.
class LogDialogue {
 public:
  // The port of what stands in front of the first record that names one.
  static constexpr const char* kUnnamedPort = "";

  void Take(const LogRecord& record);
  // Behind the last record.
  void Finish();

  const std::map<std::string, LoggedDevice>& Devices() const { return devices_; }
  LogNotes& Notes() { return notes_; }

 private:
  struct Command {
    std::string text;
    size_t line;
    bool playable;   // the log holds all of it
    bool inDoubt;    // the one before it had no answer
    bool hasReturn;  // a log that was converted has lost every "\r"
  };
  struct RecordKind {
    std::string_view start;
    void (LogDialogue::*take)(std::string_view rest, const LogRecord& record);
  };
  static const RecordKind kRecordKinds[];

  void OnCommand(std::string_view rest, const LogRecord& record);
  void OnResponse(std::string_view rest, const LogRecord& record);
  void OnWriteError(std::string_view rest, const LogRecord& record);
  void OnSpeed(std::string_view rest, const LogRecord& record);
  void OnSpeedFound(std::string_view rest, const LogRecord& record);
  void OnNewRun(std::string_view rest, const LogRecord& record);
  void OnOpen(std::string_view rest, const LogRecord& record);
  void OnClose(std::string_view rest, const LogRecord& record);
  void OnReleased(std::string_view rest, const LogRecord& record);

  void GiveCommandUp();
  void EndSession();
  void Play(const Command& command, std::string_view text, const LogRecord& record);
  bool HasRoomFor(const LoggedExchange& exchange, const std::string& port, size_t line);
  std::optional<std::string> Port(size_t line);

  std::optional<Command> command_;  // until its answer comes
  std::set<std::string> open_;      // the ports that are open
  std::map<std::string, LoggedDevice> devices_;
  std::string lastPort_;
  bool sameStretch_ = false;
  bool inDoubt_ = false;  // whether the doubt about the port has been noted
  int speed_ = 0;         // as far as the search for it tells; 0 otherwise
  size_t room_ = 32 * 1024 * 1024;
  bool full_ = false;
  LogNotes notes_;
};

}  // namespace kxsim
