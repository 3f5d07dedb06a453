#include <simulator/ReplySender.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace kxsim {
namespace {

constexpr size_t kFloodPiece = 4096;
constexpr std::chrono::milliseconds kFloodPause{1};

}  // namespace

void ReplySender::Send(Delivery delivery, Gone gone) {
  // The host was heard, so its speed is the line's, also of a device that takes any.
  faults_.Spoil(delivery, terminal_.HostSpeed());
  std::chrono::nanoseconds pause = delivery.pause;
  for (std::string& piece : delivery.pieces) {
    sender_.Send({std::move(piece), pause, delivery.smallestPiece, delivery.smallestGap});
    pause = delivery.pieceGap;
  }
  delivery.pieces.clear();
  sender_.Send(
      {.sent = [delivery = std::move(delivery), gone = std::move(gone)] { gone(delivery); }});
}

void ReplySender::SendRest(const Delivery& delivery) {
  if (!delivery.after.empty()) sender_.Send({delivery.after, delivery.afterPause});
  if (delivery.flood) Flood(delivery.floodText, delivery.floodBytes, delivery.floodBytes == 0);
}

void ReplySender::Flood(const std::string& text, size_t left, bool endless) {
  if (left == 0 && !endless) return;
  std::string piece;
  while (piece.size() < kFloodPiece && (endless || piece.size() < left)) piece += text;
  left -= std::min(left, piece.size());
  sender_.Send({.bytes = std::move(piece),
                .pause = kFloodPause,
                .sent = [this, text, left, endless] { Flood(text, left, endless); }});
}

}  // namespace kxsim
