#include <benchmarks/model/ModelDevice.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace kxmodel {

namespace {

constexpr Seconds kNever = std::numeric_limits<Seconds>::infinity();

// What comes together at the pace of a line: a serial port's buffer fills before it tells.
constexpr size_t kBytesAtOnce = 8;
constexpr double kBitsPerByte = 10;

struct Register {
  std::string_view query;  // within a command line
  const char* padded;
  const char* plain;
};

constexpr Register kRegisters[] = {{"S3?", "013", "13"}, {"S4?", "010", "10"}, {"S5?", "008", "8"}};

struct NamedQuestion {
  std::string_view line;
  std::string_view text;
};

constexpr NamedQuestion kNamedQuestions[] = {
    {"AT+GCAP", "+GCAP: +CGSM"}, {"AT+CMEE?", "+CMEE: 0"}, {"AT+CSQ", "+CSQ: 20,99"}};

constexpr std::string_view kUnsolicited[] = {"\r\nRING\r\n", "\r\n+CREG: 1\r\n",
                                             "\r\n+CMTI: \"SM\",3\r\n"};

}  // namespace

void ModelDevice::Message::Append(std::string_view more) {
  const size_t room = std::min(more.size(), bytes.size() - size);
  memcpy(bytes.data() + size, more.data(), room);
  size = static_cast<uint8_t>(size + room);
}

ModelDevice::ModelDevice(const DeviceTraits& traits, Random& random)
    : traits_(traits),
      random_(random),
      base_(random.WithinOrders(traits.base)),
      wakesAt_(random.Within(traits.wakesAt)),
      echo_(traits.echo) {}

void ModelDevice::Ask(const Question& question) {
  asked_ = question;
  askedTimes_ = 0;
  wasLate_ = false;
}

void ModelDevice::Say(std::string_view bytes, Seconds at) {
  Message message;
  message.at = at;
  message.result = true;
  message.Append(bytes);
  Queue(message);
}

void ModelDevice::Spoil() { spoilt_ = true; }

void ModelDevice::Hear(std::string_view bytes, Seconds now) {
  if (echo_) {
    Message echo;
    echo.at = now;
    echo.Append(bytes);
    Queue(echo);
  }
  while (!bytes.empty()) {
    const size_t end = std::min(bytes.find('\r'), bytes.size());
    TakeLine(bytes.substr(0, end), now);
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
  }
  SendUnasked(now);
}

void ModelDevice::TakeLine(std::string_view line, Seconds now) {
  const bool spoilt = spoilt_;
  spoilt_ = false;
  if (spoilt || line.substr(0, 2) != "AT") return;
  const bool asked = line == asked_.line;
  if (asked && asked_.ignored) return;
  const bool firstTry = asked && ++askedTimes_ == 1;
  Message message;
  message.truth = {asked ? asked_.exchange : 0, DrawService(firstTry)};
  if (!Accept(now, message.truth.took, message.at)) return;
  if (line.substr(0, 4) == "ATE0") echo_ = false;
  message.command = commands_;
  Answer(line, firstTry && asked_.lost, message);
}

Seconds ModelDevice::DrawService(bool firstTry) {
  if (firstTry && asked_.takes >= 0) return asked_.takes;
  if (commands_ == 0 && traits_.firstTakes > 0) {
    wasLate_ = true;
    return traits_.firstTakes;
  }
  const Seconds takes = base_ * random_.Within({1, traits_.spread});
  if (!random_.Chance(traits_.lateShare)) return takes;
  wasLate_ = true;
  return takes + random_.Within(traits_.late);
}

// False when the command is not worked on.
bool ModelDevice::Accept(Seconds now, Seconds takes, Seconds& done) {
  const Seconds free = std::max(busyUntil_, wakesAt_);
  const bool busy = now < free;
  wasLate_ = wasLate_ || now < wakesAt_;
  if (busy && traits_.busy == Busy::kDrops) return false;
  if (busy && traits_.busy == Busy::kAborts) {
    ForgetCommand(commands_);
    busyUntil_ = now;
    return false;
  }
  const Seconds begun =
      traits_.busy == Busy::kWorksAhead ? std::max(now, wakesAt_) : std::max(now, free);
  done = busyUntil_ = std::max(begun + takes, busyUntil_);
  ++commands_;
  return true;
}

void ModelDevice::Answer(std::string_view line, bool lost, Message& message) {
  const std::string_view result = AnswerQuestion(line, message);
  if (lost || random_.Chance(traits_.lost)) return;
  SendResult(result, message);
  if (random_.Chance(traits_.doubled)) SendAgain(message, result);
}

// Appends the text of the answer and gives its result.
std::string_view ModelDevice::AnswerQuestion(std::string_view line, Message& message) const {
  std::string_view text;
  std::string_view result = "OK";
  const auto* named = std::find_if(std::begin(kNamedQuestions), std::end(kNamedQuestions),
                                   [&](const NamedQuestion& row) { return row.line == line; });
  if (line == asked_.line) {
    text = asked_.text;
    result = asked_.result;
  } else if (named != std::end(kNamedQuestions)) {
    if (traits_.refusesNames) return "ERROR";
    text = named->text;
  } else if (line != "AT" && line != "ATE0V1") {
    return AppendRegisters(line, message) ? "OK" : "ERROR";
  }
  if (text.empty()) return result;
  message.Append("\r\n");
  message.Append(text);
  message.Append("\r\n");
  return result;
}

// One line for each register that a line like "ATE0V1S3?S5?" asks for.
bool ModelDevice::AppendRegisters(std::string_view line, Message& message) const {
  if (traits_.registers == Registers::kRefused) return false;
  line.remove_prefix(2);
  if (line.substr(0, 4) == "E0V1") line.remove_prefix(4);
  while (!line.empty()) {
    const auto* row =
        std::find_if(std::begin(kRegisters), std::end(kRegisters),
                     [&](const Register& entry) { return line.substr(0, 3) == entry.query; });
    if (row == std::end(kRegisters)) return false;
    message.Append("\r\n");
    message.Append(traits_.registers == Registers::kPadded ? row->padded : row->plain);
    message.Append("\r\n");
    line.remove_prefix(row->query.size());
  }
  return true;
}

void ModelDevice::SendResult(std::string_view result, Message& message) {
  message.Append("\r\n");
  message.Append(result);
  message.Append("\r\n");
  message.result = true;
  if (random_.Chance(traits_.cut)) {
    message.cutAt = static_cast<uint8_t>(1 + random_.Below(message.size - 1u));
    message.pause = random_.Within(traits_.cutFor);
  }
  Queue(message);
}

void ModelDevice::SendAgain(const Message& answer, std::string_view result) {
  Message again;
  if (traits_.doubledWhole && !traits_.contradicts) {
    again.Append(answer.View());
  } else {
    again.Append("\r\n");
    again.Append(traits_.contradicts ? "OK" : result);
    again.Append("\r\n");
  }
  again.at = answer.at + answer.pause + random_.Within(traits_.doubledAfter);
  again.result = true;
  busyUntil_ = std::max(busyUntil_, again.at);
  Queue(again);
}

void ModelDevice::SendUnasked(Seconds now) {
  if (random_.Chance(traits_.stray)) Say("\r\nOK\r\n", now + random_.Within({0, 6}));
  if (random_.Chance(traits_.unsolicited)) {
    Message line;
    line.at = now + random_.Within({0, 3});
    line.Append(kUnsolicited[random_.Below(std::size(kUnsolicited))]);
    Queue(line);
  }
}

void ModelDevice::Queue(const Message& message) {
  const auto earlier = std::find_if(queued_.begin(), queued_.end(),
                                    [&](const Message& other) { return other.at <= message.at; });
  queued_.insert(earlier, message);
}

void ModelDevice::ForgetCommand(uint32_t command) {
  std::erase_if(queued_, [&](const Message& message) { return message.command == command; });
}

Seconds ModelDevice::NextPiece() const {
  if (sent_ < sending_.size) return nextAt_;
  return queued_.empty() ? kNever : std::max(queued_.back().at, freeAt_);
}

Piece ModelDevice::TakePiece() {
  const Seconds at = NextPiece();
  if (sent_ >= sending_.size) {
    sending_ = queued_.back();
    queued_.pop_back();
    sent_ = 0;
  }
  const size_t left = sending_.size - sent_;
  size_t count = left;
  Seconds pause = 0;
  if (traits_.bitsPerSecond > 0) {
    count = std::min(left, kBytesAtOnce);
    pause = kBitsPerByte * static_cast<double>(count) / traits_.bitsPerSecond;
  } else if (sent_ < sending_.cutAt) {
    count = sending_.cutAt - sent_;
    pause = sending_.pause;
  }
  Piece piece{sending_.View().substr(sent_, count), at, sending_.result && count == left,
              sending_.truth};
  sent_ += count;
  nextAt_ = at + pause;
  freeAt_ = at + (sent_ < sending_.size ? 0 : pause);
  return piece;
}

bool ModelDevice::Idle(Seconds now) const {
  return busyUntil_ <= now && queued_.empty() && sent_ >= sending_.size;
}

bool ModelDevice::OwesAnswer() const {
  const auto owed = [](const Message& message) { return message.truth.exchange != 0; };
  return (sent_ < sending_.size && owed(sending_)) ||
         std::any_of(queued_.begin(), queued_.end(), owed);
}

}  // namespace kxmodel
