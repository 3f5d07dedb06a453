#pragma once

#include <cstddef>
#include <istream>
#include <string>
#include <string_view>

namespace kxsim {

// One record of a debug log, or lines that are none.
struct LogRecord {
  enum class End { kWhole, kFull, kEndOfLog };

  size_t firstLine = 0;
  size_t lastLine = 0;
  std::string text;       // behind the time stamp, without the "\n" at its end
  End end = End::kWhole;  // otherwise the log cut it: at its limit, or where the file ends
  bool stray = false;     // no record; nothing of it is kept
};

// Takes a debug log apart. Whatever the file holds, it is read once and no more of it than a few
// records are in memory.
class LogRecords {
 public:
  explicit LogRecords(std::istream& log) : log_(log) {}

  bool Next(LogRecord& record);

 private:
  std::string_view Ahead() const { return std::string_view(buffer_).substr(position_); }
  void Fill();
  void Consume(size_t count, LogRecord& record);
  void TakeRecord(size_t stamp, LogRecord& record);
  void TakeStray(LogRecord& record);

  std::istream& log_;
  std::string buffer_;
  size_t position_ = 0;
  size_t line_ = 1;
};

}  // namespace kxsim
