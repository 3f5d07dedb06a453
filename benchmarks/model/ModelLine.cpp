#include <benchmarks/model/ModelLine.h>

#include <algorithm>
#include <cstdio>

namespace kxmodel {

namespace {

// What a byte looks like that was read at another speed: anything, and often a NUL.
char Rubbish(Random& random) {
  return random.Chance(.4) ? '\0' : static_cast<char>(0x80 + random.Below(0x80));
}

std::string Readable(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    char escaped[8];
    const bool plain = byte >= ' ' && byte <= '~';
    snprintf(escaped, sizeof escaped, plain ? "%c" : "\\x%02x", static_cast<unsigned char>(byte));
    text += byte == '\r' ? "\\r" : byte == '\n' ? "\\n" : escaped;
  }
  return text;
}

// Behind so many reads that change nothing the clock goes on by itself.
constexpr uint32_t kMostIdleReads = 100;

}  // namespace

void Timeline::Add(Seconds at, std::string_view who, std::string_view what) {
  char head[48];
  snprintf(head, sizeof head, "%10.4f  %-8.*s ", at, static_cast<int>(who.size()), who.data());
  text_ += head;
  text_ += Readable(what);
  text_ += '\n';
}

ModelLine::ModelLine(const LineTraits& traits, ModelDevice& device, Random& random,
                     Timeline* timeline)
    : traits_(traits), device_(device), random_(random), timeline_(timeline) {}

void ModelLine::Note(std::string_view who, std::string_view what) {
  if (timeline_ != nullptr) timeline_->Add(now_, who, what);
}

void ModelLine::Ask(const Question& question) {
  asked_ = question;
  seen_ = {};
  device_.Ask(question);
}

bool ModelLine::SpeedFits() const {
  return traits_.otherSpeed == OtherSpeed::kSame || speed_ == deviceSpeed_;
}

bool ModelLine::Write(std::string_view command) {
  Collect();
  Note("host", command);
  if (!command.empty() && command.substr(0, command.size() - 1) == asked_.line) {
    NoteSend();
  } else {
    ++seen_.others;
  }
  if (traits_.deviceFollows) deviceSpeed_ = speed_;
  if (SpeedFits()) {
    device_.Hear(command, now_);
  } else if (traits_.spoils) {
    device_.Spoil();
  }
  return true;
}

void ModelLine::NoteSend() {
  if (seen_.sends > 0 && seen_.results > 0) ++seen_.sentAgain;
  if (++seen_.sends > 1) return;
  seen_.sentAt = now_;
  seen_.owed =
      device_.OwesAnswer() || std::any_of(results_.begin(), results_.end(),
                                          [](const Truth& truth) { return truth.exchange != 0; });
}

// Takes what has come by now into the system's buffer.
void ModelLine::Collect() {
  while (device_.NextPiece() <= now_) {
    const Piece piece = device_.TakePiece();
    if (!SpeedFits()) {
      CollectOtherSpeed(piece);
      continue;
    }
    if (timeline_ != nullptr) timeline_->Add(piece.at, "device", piece.bytes);
    waiting_ += piece.bytes;
    if (piece.result) results_.push_back(piece.truth);
  }
}

void ModelLine::CollectOtherSpeed(const Piece& piece) {
  if (timeline_ != nullptr) timeline_->Add(piece.at, "unread", piece.bytes);
  if (traits_.otherSpeed == OtherSpeed::kVanishes) return;
  const bool nuls = traits_.otherSpeed == OtherSpeed::kNuls;
  for (size_t i = 0; i < piece.bytes.size(); ++i) waiting_ += nuls ? '\0' : Rubbish(random_);
}

kxwan::Line::Heard ModelLine::Receive(Seconds until) {
  const Seconds before = now_;
  Collect();
  if (waiting_.empty()) {
    now_ = std::max(now_, std::min(until, device_.NextPiece()));
    Collect();
  }
  idleReads_ = waiting_.empty() && now_ <= before ? idleReads_ + 1 : 0;
  mostIdleReads_ = std::max(mostIdleReads_, idleReads_);
  if (idleReads_ > kMostIdleReads) now_ += .001;
  return HandOver();
}

kxwan::Line::Heard ModelLine::HandOver() {
  given_.swap(waiting_);
  waiting_.clear();
  for (const Truth& truth : results_) {
    if (seen_.sends > 0) ++seen_.results;
    if (truth.exchange == 0 || truth.exchange != asked_.exchange || seen_.own) continue;
    seen_.own = true;
    seen_.ownTook = truth.took;
  }
  results_.clear();
  const Heard heard{given_, now_, false};
  if (given_.empty()) return heard;
  if (random_.Chance(traits_.stall)) sleep_ = traits_.stallFor;
  now_ += std::exchange(sleep_, 0);
  return heard;
}

void ModelLine::Reopen() {
  Collect();
  Note("host", "(opens the port anew)");
  waiting_.clear();
  results_.clear();
  changed_ = true;
}

bool ModelLine::SetSpeed(unsigned long speed) {
  Collect();
  changed_ = changed_ || speed_ != speed;
  speed_ = speed;
  Note("speed", std::to_string(speed));
  return true;
}

bool ModelLine::GetSpeed(unsigned long& speed) {
  speed = speed_;
  return true;
}

void ModelLine::SetDeviceSpeed(unsigned long speed) {
  Collect();
  deviceSpeed_ = speed;
}

}  // namespace kxmodel
