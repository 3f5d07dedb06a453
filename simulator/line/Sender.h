#pragma once

#include <simulator/line/Loop.h>
#include <simulator/line/PseudoTerminal.h>

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace kxsim {

// Bytes on their way to the host.
struct Chunk {
  std::string bytes = {};
  std::chrono::nanoseconds pause = {};  // before the first byte
  size_t pieceSize = 0;                 // 0: all at once
  std::chrono::nanoseconds gap = {};    // between pieces
  Loop::Callback sent = {};             // called when the last byte has gone
};

// Sends chunks one after the other, each at its time, as far as the host takes them.
class Sender {
 public:
  struct Listener {
    // Looks at bytes that go out now and may change them.
    std::function<void(std::string& bytes)> filter = {};
    // The terminal takes no more: OnWritable is to be called when it does.
    Loop::Callback blocked = {};
  };

  Sender(Loop& loop, const PseudoTerminal& terminal, Listener listener)
      : loop_(loop), terminal_(terminal), listener_(std::move(listener)) {}
  ~Sender() { Clear(); }

  // While more than this waits for a host that does not read, nothing is added: it is lost, as on
  // a line without flow control.
  static constexpr size_t kMostWaiting = 256 * 1024;
  void Send(Chunk chunk);
  bool Idle() const { return chunks_.empty(); }
  size_t Waiting() const { return waiting_; }
  // Forgets everything that was not sent.
  void Clear();
  // The terminal takes bytes again.
  void OnWritable();
  bool Blocked() const { return blocked_; }

 private:
  void Continue();
  bool SendPiece(Chunk& chunk);
  size_t Write(std::string piece);
  void WaitUntil(Loop::Clock::time_point when);

  Loop& loop_;
  const PseudoTerminal& terminal_;
  const Listener listener_;
  std::deque<Chunk> chunks_;
  size_t waiting_ = 0;
  size_t offset_ = 0;     // into the first chunk
  size_t pieceLeft_ = 0;  // of the piece that is under way
  Loop::Clock::time_point due_;
  bool started_ = false;
  bool blocked_ = false;
  bool continuing_ = false;
  std::optional<Loop::TimerKey> timer_;
};

}  // namespace kxsim
