#include <KXWAN/modem/PortLinePrivate.h>

#include <KXWAN/foundation/ClockPrivate.h>
#include <KXWAN/foundation/DebugLog.h>
#include <termios.h>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace kxwan {

namespace {

constexpr size_t kPiece = 4096;

// A device that floods is not heard for ever at once.
constexpr size_t kMostAtOnce = 16 * kPiece;

// A fresh tty translates and interprets what comes in, so that "\r\n" would never arrive as such.
// The port puts the settings back when it closes.
void MakeInputTransparent(int fd) {
  constexpr tcflag_t kTranslations =
      INLCR | IGNCR | ICRNL | ISTRIP | INPCK | PARMRK | IXON | IXOFF | IXANY;
  struct termios attributes;
  if (tcgetattr(fd, &attributes) != 0 || (attributes.c_iflag & kTranslations) == 0) return;
  attributes.c_iflag &= ~kTranslations;
  tcsetattr(fd, TCSANOW, &attributes);
}

Seconds SecondsAt(std::chrono::steady_clock::time_point time) {
  return std::chrono::duration<Seconds>(time.time_since_epoch()).count();
}

// A wait that does not end before its time.
std::chrono::milliseconds MillisecondsUntil(Seconds time) {
  constexpr Seconds kLongest = 1e6;
  return std::chrono::milliseconds(std::llround(std::ceil(1000 * std::min(time, kLongest))));
}

}  // namespace

Seconds PortLine::Now() { return SecondsAt(std::chrono::steady_clock::now()); }

// However late the process runs, what had come by a time is heard before that time counts as over.
Line::Heard PortLine::Receive(Seconds until) {
  constexpr std::chrono::milliseconds kPauseWhenGone(100);
  filled_ = 0;
  const auto wait = std::max(MillisecondsUntil(until - Now()), std::chrono::milliseconds(0));
  Arrival arrival = Take(wait);
  const Seconds at = SecondsAt(arrival.at);
  while (arrival.bytes == kPiece && filled_ < kMostAtOnce) {
    arrival = Take(std::chrono::milliseconds(0));
  }
  if (!arrival.gone || filled_ > 0) return {{buffer_.data(), filled_}, at};
  // A line that hung up does not wait, and each look at it may leave a record in the log.
  WaitFully(std::min(wait, kPauseWhenGone));
  return {{}, Now(), /*gone=*/true};
}

Arrival PortLine::Take(std::chrono::milliseconds wait) {
  if (buffer_.size() < filled_ + kPiece) buffer_.resize(filled_ + kPiece);
  const Arrival arrival = kxwan::Receive(*modem_.m_pSerial, buffer_.data() + filled_, kPiece, wait);
  filled_ += arrival.bytes;
  return arrival;
}

bool PortLine::Write(std::string_view command) {
  KXOutputDebug("CSModem::SendCommand() -> %.*s\n", static_cast<int>(command.size()),
                command.data());
  return modem_.m_pSerial->Write(reinterpret_cast<const unsigned char*>(command.data()),
                                 command.size()) != 0;
}

bool PortLine::SetSpeed(unsigned long speed) {
  return modem_.m_pSerial->SetDataFormat(speed, E_PARITY_UNCHANGED, E_BYTESIZE_UNCHANGED,
                                         E_STOPBITS_UNCHANGED) != 0;
}

bool PortLine::GetSpeed(unsigned long& speed) {
  return modem_.m_pSerial->GetDataFormat(&speed) != 0;
}

// A reopened port has the system's settings again.
bool PortLine::TakeChange() {
  if (generation_ == modem_.m_pSerial->lineGeneration) return false;
  generation_ = modem_.m_pSerial->lineGeneration;
  MakeInputTransparent(modem_.m_pSerial->fd);
  return true;
}

void PortLine::NoteTimeout() { KXOutputDebug("CSModem::GetResponse() -> Response Timeout !\n"); }

}  // namespace kxwan
