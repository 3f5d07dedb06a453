#include <simulator/line/Sender.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace kxsim {

void Sender::Send(Chunk chunk) {
  if (waiting_ > kMostWaiting) chunk.bytes.clear();
  const bool plain = chunk.pause.count() == 0 && chunk.pieceSize == 0 && !chunk.sent;
  if (plain && chunk.bytes.empty()) return;
  waiting_ += chunk.bytes.size();
  if (plain && !chunks_.empty() && chunks_.back().pieceSize == 0 && !chunks_.back().sent) {
    // What is echoed byte by byte must not take more room than its bytes.
    chunks_.back().bytes += chunk.bytes;
  } else {
    chunks_.push_back(std::move(chunk));
  }
  Continue();
}

void Sender::Clear() {
  if (timer_) loop_.Cancel(*timer_);
  timer_.reset();
  chunks_.clear();
  waiting_ = offset_ = pieceLeft_ = 0;
  started_ = blocked_ = false;
}

void Sender::OnWritable() {
  blocked_ = false;
  // Time that the host spent without reading is not made up for.
  due_ = std::max(due_, Loop::Clock::now());
  Continue();
}

void Sender::WaitUntil(Loop::Clock::time_point when) {
  timer_ = loop_.At(when, [this] {
    timer_.reset();
    Continue();
  });
}

void Sender::Continue() {
  // What is called when a chunk has gone may send more: it only joins the queue.
  if (continuing_ || timer_ || blocked_) return;
  continuing_ = true;
  while (!chunks_.empty() && !timer_ && !blocked_) {
    Chunk& chunk = chunks_.front();
    if (!started_) {
      started_ = true;
      due_ = Loop::Clock::now() + chunk.pause;
    }
    if (!SendPiece(chunk)) continue;
    const Loop::Callback sent = std::move(chunk.sent);
    chunks_.pop_front();
    offset_ = 0;
    started_ = false;
    if (sent) sent();
  }
  continuing_ = false;
}

// Sends what is due. True when the chunk has gone as a whole.
bool Sender::SendPiece(Chunk& chunk) {
  if (due_ > Loop::Clock::now()) {
    WaitUntil(due_);
    return false;
  }
  if (offset_ == chunk.bytes.size()) return true;
  if (pieceLeft_ == 0) {
    const size_t left = chunk.bytes.size() - offset_;
    pieceLeft_ = chunk.pieceSize == 0 ? left : std::min(left, chunk.pieceSize);
  }
  const size_t gone = Write(chunk.bytes.substr(offset_, pieceLeft_));
  offset_ += gone;
  pieceLeft_ -= gone;
  waiting_ -= gone;
  if (blocked_) return false;
  if (offset_ == chunk.bytes.size()) return true;
  if (pieceLeft_ == 0) due_ += chunk.gap;
  return false;
}

// Gives how many bytes of the piece are done with.
size_t Sender::Write(std::string piece) {
  const size_t whole = piece.size();
  listener_.filter(piece);
  ssize_t written = 0;
  do {
    written = write(terminal_.Master(), piece.data(), piece.size());
  } while (written < 0 && errno == EINTR);
  if (written < 0 && errno == EAGAIN) {
    blocked_ = true;
    listener_.blocked();
    return 0;
  }
  // A filter may have shortened the piece, and a closed terminal takes everything.
  return written < 0 || piece.size() != whole ? whole : static_cast<size_t>(written);
}

}  // namespace kxsim
