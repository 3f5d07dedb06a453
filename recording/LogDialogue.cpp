#include <recording/LogDialogue.h>

#include <algorithm>
#include <charconv>
#include <iterator>

namespace kxsim {
namespace {

// Of a longer reply the log has the beginning.
constexpr size_t kLongestReply = 512;
// More than the library lists. A log of a program that never closes must not fill the memory.
constexpr size_t kMostOpen = 16;

// How the outcome of an exchange is logged. Any other text is that of a reply with OK.
struct LoggedOutcome {
  std::string_view text;
  bool whole;  // the record is exactly this; otherwise it begins with this
  LoggedExchange::Outcome outcome;
  std::string_view result;  // that stood in front of the rest
};

constexpr LoggedOutcome kLoggedOutcomes[] = {
    {"OK", true, LoggedExchange::Outcome::kOk, ""},
    {"ERROR", true, LoggedExchange::Outcome::kError, "ERROR"},
    {"Response Timeout !", true, LoggedExchange::Outcome::kSilence, ""},
    {"CME Error: ", false, LoggedExchange::Outcome::kError, "+CME ERROR: "},
    {"CMS Error: ", false, LoggedExchange::Outcome::kError, "+CMS ERROR: "},
};

bool IsIn(const LoggedOutcome& row, std::string_view text) {
  return row.whole ? text == row.text : text.starts_with(row.text);
}

LoggedExchange ReadOutcome(std::string_view text) {
  const auto* row = std::find_if(std::begin(kLoggedOutcomes), std::end(kLoggedOutcomes),
                                 [=](const LoggedOutcome& each) { return IsIn(each, text); });
  LoggedExchange exchange;
  if (row == std::end(kLoggedOutcomes)) {
    exchange.text = text;
    return exchange;
  }
  exchange.outcome = row->outcome;
  exchange.text = std::string(row->result) + std::string(text.substr(row->text.size()));
  return exchange;
}

void WithoutReturns(std::string_view& text) {
  while (text.ends_with('\r')) text.remove_suffix(1);
}

// "\n" alone is what a conversion made of "\r\n".
std::string WithReturns(std::string_view text) {
  std::string result;
  for (const char byte : text) {
    if (byte == '\n' && !result.ends_with('\r')) result += '\r';
    result += byte;
  }
  return result;
}

}  // namespace

const LogDialogue::RecordKind LogDialogue::kRecordKinds[] = {
    {"CSModem::SendCommand() -> ", &LogDialogue::OnCommand},
    {"CSModem::GetResponse() -> ", &LogDialogue::OnResponse},
    {"KxSerial::Write() - Error", &LogDialogue::OnWriteError},
    {"CSModem::AutoBaud() - Set to optimum baud - ", &LogDialogue::OnSpeed},
    {"CSModem::AutoBaud() - Searching on baud - ", &LogDialogue::OnSpeed},
    {"CSModem::AutoBaud() - Changed to optimum baud - ", &LogDialogue::OnSpeed},
    {"CSModem::AutoBaud() - Device ", &LogDialogue::OnSpeedFound},
    // The first open of every process.
    {"KxSerial::AllocatePortID() ID:0x104,", &LogDialogue::OnNewRun},
    {"KxSerial::Open() - '", &LogDialogue::OnOpen},
    {"KxSerial::Close()", &LogDialogue::OnClose},
    {"KxSerial::DeallocatePortID() ID:0x", &LogDialogue::OnReleased},
};

void LogDialogue::Take(const LogRecord& record) {
  if (record.stray || record.end == LogRecord::End::kEndOfLog) {
    GiveCommandUp();
    notes_.Add(record.firstLine,
               record.stray ? "this is no record of the log" : "the log ends within this record");
    return;
  }
  for (const RecordKind& kind : kRecordKinds) {
    if (!record.text.starts_with(kind.start)) continue;
    return (this->*kind.take)(std::string_view(record.text).substr(kind.start.size()), record);
  }
}

void LogDialogue::Finish() { GiveCommandUp(); }

void LogDialogue::GiveCommandUp() {
  if (command_ && command_->playable) notes_.Add(command_->line, "no answer to this command");
  command_.reset();
}

void LogDialogue::OnCommand(std::string_view rest, const LogRecord& record) {
  const bool whole = record.end == LogRecord::End::kWhole;
  if (!whole) notes_.Add(record.firstLine, "the command is longer than the log keeps");
  // A reply has several lines, a command has one.
  const size_t lineEnd = rest.find('\n');
  if (lineEnd != rest.npos) notes_.Add(record.firstLine + 1, "this is no record of the log");
  rest = rest.substr(0, lineEnd);
  Command command = {"", record.firstLine, whole, false, rest.ends_with('\r')};
  WithoutReturns(rest);
  command.text = rest;
  command.inDoubt = command_ && command_->text != command.text;
  GiveCommandUp();
  command_ = std::move(command);
}

void LogDialogue::OnResponse(std::string_view rest, const LogRecord& record) {
  const std::optional<Command> command = std::exchange(command_, std::nullopt);
  if (!command) return notes_.Add(record.firstLine, "an answer without its command");
  if (!command->playable) return;
  if (command->inDoubt) {
    return notes_.Add(record.firstLine, "which of the two commands this answers cannot be told");
  }
  WithoutReturns(rest);
  Play(*command, rest, record);
}

void LogDialogue::OnWriteError(std::string_view, const LogRecord&) {
  if (command_) notes_.Add(command_->line, "this command could not be sent");
  command_.reset();
}

void LogDialogue::Play(const Command& command, std::string_view text, const LogRecord& record) {
  const std::optional<std::string> port = Port(record.firstLine);
  if (!port) return;
  LoggedExchange exchange = ReadOutcome(command.hasReturn ? std::string(text) : WithReturns(text));
  const bool reply = exchange.outcome == LoggedExchange::Outcome::kOk;
  if (reply && exchange.text.size() > kLongestReply && command.hasReturn) {
    // Only lines that are no records make it longer than it can be.
    const size_t lineEnd = exchange.text.rfind('\n', kLongestReply);
    exchange.text.resize(lineEnd == exchange.text.npos ? kLongestReply : lineEnd);
    notes_.Add(record.lastLine, "this is no record of the log");
  } else if (record.end == LogRecord::End::kFull ||
             (reply && exchange.text.size() == kLongestReply)) {
    notes_.Add(record.firstLine, "the answer may be longer: this is all that the log keeps of it");
  }
  exchange.command = command.text;
  exchange.speed = speed_;
  // Afterwards the speed may be changed without a word.
  if (exchange.outcome != LoggedExchange::Outcome::kSilence) speed_ = 0;
  if (!HasRoomFor(exchange, *port, command.line)) return;
  LoggedDevice& device = devices_[*port];
  device.Took(command.line, record.lastLine, sameStretch_ && *port == lastPort_);
  lastPort_ = *port;
  sameStretch_ = true;
  if (!device.Add(std::move(exchange))) {
    notes_.Add(command.line, "the device has more answers to this command than are kept");
  }
}

bool LogDialogue::HasRoomFor(const LoggedExchange& exchange, const std::string& port, size_t line) {
  constexpr size_t kExchange = 256;  // roughly what holds one together, and a device
  constexpr size_t kDevice = 2048;
  const size_t size = exchange.text.size() + exchange.command.size() + kExchange +
                      (devices_.contains(port) ? 0 : kDevice);
  if (!full_ && size > room_) notes_.Add(line, "the log holds more than is kept in memory");
  full_ = full_ || size > room_;
  if (!full_) room_ -= size;
  return !full_;
}

// The records of an exchange do not name their port.
std::optional<std::string> LogDialogue::Port(size_t line) {
  if (open_.size() > 1) {
    if (!inDoubt_)
      notes_.Add(line, "several ports are open from here on; which one cannot be told");
    inDoubt_ = true;
    return std::nullopt;
  }
  inDoubt_ = false;
  return open_.empty() ? kUnnamedPort : *open_.begin();
}

void LogDialogue::OnSpeed(std::string_view rest, const LogRecord&) {
  speed_ = 0;
  std::from_chars(rest.data(), rest.data() + rest.size(), speed_);
}

void LogDialogue::OnSpeedFound(std::string_view, const LogRecord&) { speed_ = 0; }

void LogDialogue::EndSession() {
  GiveCommandUp();
  speed_ = 0;
  sameStretch_ = false;
}

void LogDialogue::OnNewRun(std::string_view, const LogRecord&) {
  EndSession();
  open_.clear();
}

void LogDialogue::OnOpen(std::string_view rest, const LogRecord&) {
  constexpr std::string_view kSuccess = "' Success";
  WithoutReturns(rest);
  if (!rest.ends_with(kSuccess)) return;
  EndSession();
  if (open_.size() >= kMostOpen) open_.clear();
  open_.emplace(rest.substr(0, rest.size() - kSuccess.size()));
}

void LogDialogue::OnClose(std::string_view, const LogRecord&) {
  GiveCommandUp();
  speed_ = 0;
}

// "104, path:/dev/ttyUSB0". When the log begins with the port already open, this is where it is
// named.
void LogDialogue::OnReleased(std::string_view rest, const LogRecord&) {
  constexpr std::string_view kPath = ", path:";
  WithoutReturns(rest);
  const size_t at = rest.find(kPath);
  if (at == rest.npos) return;
  const std::string port(rest.substr(at + kPath.size()));
  EndSession();
  const bool known = open_.erase(port) > 0 || devices_.contains(port);
  const auto unnamed = devices_.find(kUnnamedPort);
  if (known || unnamed == devices_.end()) return;
  auto device = devices_.extract(unnamed);
  device.key() = port;
  devices_.insert(std::move(device));
}

}  // namespace kxsim
