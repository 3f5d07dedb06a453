#include <recording/LogRecords.h>

#include <profile/Text.h>

#include <algorithm>
#include <iterator>

namespace kxsim {
namespace {

// The library formats a record into 1024 bytes and cuts what is longer. It did not always end the
// line of such a record: then the next one follows on the same line.
constexpr size_t kLongestRecord = 1023;
constexpr size_t kLookAhead = 2 * kLongestRecord;
constexpr size_t kChunk = 64 * 1024;

// Zeros stand for digits. From 2100 on the year takes three.
constexpr std::string_view kStamps[] = {"00:00:00 00:00:00 - ", "00:00:000 00:00:00 - "};

bool Fits(char byte, char pattern) { return pattern == '0' ? IsDigit(byte) : byte == pattern; }

// The length of the time stamp that a text begins with; 0 when it does not.
size_t StampLength(std::string_view text) {
  for (const std::string_view stamp : kStamps) {
    const std::string_view start = text.substr(0, stamp.size());
    if (std::equal(start.begin(), start.end(), stamp.begin(), stamp.end(), Fits)) {
      return stamp.size();
    }
  }
  return 0;
}

struct RecordEnd {
  size_t length;
  LogRecord::End how;
};

// A reply is logged with its inner line breaks, so that a record ends only where the next begins.
RecordEnd FindEnd(std::string_view ahead) {
  const std::string_view window = ahead.substr(0, kLongestRecord);
  size_t firstBreak = 0;  // that is not one of a reply
  for (size_t at = window.find('\n'); at != window.npos; at = window.find('\n', at + 1)) {
    const std::string_view rest = ahead.substr(at + 1);
    const bool cut = at + 1 == kLongestRecord && window[at - 1] != '\r';
    if (rest.empty() || StampLength(rest) != 0) {
      return {at + 1, cut ? LogRecord::End::kFull : LogRecord::End::kWhole};
    }
    if (firstBreak == 0 && window[at - 1] != '\r') firstBreak = at + 1;
  }
  if (window.size() < kLongestRecord) return {window.size(), LogRecord::End::kEndOfLog};
  // Otherwise what follows it is no record, and how much of that belongs to it cannot be told.
  const bool full = firstBreak == 0 || StampLength(ahead.substr(kLongestRecord)) != 0;
  if (full) return {kLongestRecord, LogRecord::End::kFull};
  return {firstBreak, LogRecord::End::kWhole};
}

}  // namespace

bool LogRecords::Next(LogRecord& record) {
  Fill();
  if (Ahead().empty()) return false;
  record = {};
  record.firstLine = line_;
  const size_t stamp = StampLength(Ahead());
  stamp == 0 ? TakeStray(record) : TakeRecord(stamp, record);
  return true;
}

void LogRecords::Fill() {
  if (buffer_.size() - position_ >= kLookAhead || !log_) return;
  buffer_.erase(0, position_);
  position_ = 0;
  const size_t kept = buffer_.size();
  buffer_.resize(kept + kChunk);
  log_.read(buffer_.data() + kept, static_cast<std::streamsize>(kChunk));
  buffer_.resize(kept + static_cast<size_t>(log_.gcount()));
}

void LogRecords::Consume(size_t count, LogRecord& record) {
  const std::string_view taken = Ahead().substr(0, count);
  line_ += static_cast<size_t>(std::count(taken.begin(), taken.end(), '\n'));
  record.lastLine = taken.back() == '\n' ? line_ - 1 : line_;
  position_ += count;
}

void LogRecords::TakeRecord(size_t stamp, LogRecord& record) {
  const RecordEnd end = FindEnd(Ahead());
  std::string_view text = Ahead().substr(stamp, end.length - std::min(end.length, stamp));
  if (text.ends_with('\n')) text.remove_suffix(1);
  record.text = text;
  record.end = end.how;
  Consume(end.length, record);
}

void LogRecords::TakeStray(LogRecord& record) {
  record.stray = true;
  do {
    const size_t lineEnd = Ahead().find('\n');
    Consume(lineEnd == std::string_view::npos ? Ahead().size() : lineEnd + 1, record);
    Fill();
  } while (!Ahead().empty() && StampLength(Ahead()) == 0);
}

}  // namespace kxsim
