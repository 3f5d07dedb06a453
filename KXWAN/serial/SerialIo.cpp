#include <KXWAN/serial/SerialIoPrivate.h>

#include <KXWAN/foundation/DebugLog.h>
#include <KXWAN/serial/KxSerial.h>
#include <KXWAN/serial/SystemCallPrivate.h>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstring>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds kSilence(100);
constexpr Milliseconds kRoomWait(500);
constexpr int kMaxStalledWrites = 3;

// What the line is ready for, 0 when the time is over. Signals make the wait no shorter and no
// longer.
short Await(int fd, short events, Milliseconds wait) {
  struct pollfd line = {fd, events, 0};
  const auto deadline = Clock::now() + wait;
  auto left = wait;
  while (poll(&line, 1, static_cast<int>(std::clamp<int64_t>(left.count(), 0, INT_MAX))) == -1 &&
         errno == EINTR) {
    left = std::chrono::ceil<Milliseconds>(deadline - Clock::now());
  }
  return line.revents;
}

// What one look at the line gave.
struct Look {
  ssize_t count = 0;    // bytes; 0: nothing came; -1: the read failed, with errno
  bool hungUp = false;  // nothing came and nothing will
  Clock::time_point at = {};
};

constexpr short kHungUp = POLLHUP | POLLERR | POLLNVAL;

// One read that gave nothing without failing: a quiet line is not ready to be read, while one that
// hung up is, again and again.
Look ReadOnce(int fd, void* buffer, size_t room) {
  const auto at = Clock::now();
  const ssize_t count = kxwan::Uninterrupted([&] { return read(fd, buffer, room); });
  if (count == 0) return {0, Await(fd, POLLIN, Milliseconds(0)) != 0, at};
  if (count == -1 && errno == EAGAIN) return {0, false, at};
  return {count, false, at};
}

// Waits for input and takes what is there with one read.
Look ReadWithin(int fd, void* buffer, size_t room, Milliseconds wait) {
  const auto deadline = Clock::now() + wait;
  for (auto left = wait;; left = std::chrono::ceil<Milliseconds>(deadline - Clock::now())) {
    const short ready = Await(fd, POLLIN, left);
    if (ready == 0) return {};
    const Look look = ReadOnce(fd, buffer, room);
    if (look.count != 0 || look.hungUp) return look;
    if ((ready & kHungUp) != 0) return {0, true, look.at};
    // Somebody else took it.
  }
}

// The same, and whatever is there when the time is over, as the process may run late.
Look ReadWithinOrLate(int fd, void* buffer, size_t room, Milliseconds wait) {
  const Look look = wait.count() > 0 ? ReadWithin(fd, buffer, room, wait) : Look();
  return look.count != 0 || look.hungUp ? look : ReadOnce(fd, buffer, room);
}

void NoteReadError(KxSerial& port) {
  const int error = errno;
  port.isOpen = 0;
  KXOutputDebug("KxSerial::Read() - Error reading from modem - %s(%d).\n", std::strerror(error),
                error);
}

// Once for each open: what the descriptor is does not change behind that.
void StopBlocking(KxSerial& port) {
  if (!port.blocking) return;
  fcntl(port.fd, F_SETFL, O_NONBLOCK);
  port.blocking = false;
}

// One write to a line that does not block. 0 when the line has taken nothing for half a second.
ssize_t WriteSome(int fd, const unsigned char* data, size_t length) {
  const auto attempt = [&] { return write(fd, data, length); };
  ssize_t count = kxwan::Uninterrupted(attempt);
  if (count != -1 || errno != EAGAIN) return count;
  Await(fd, POLLOUT, kRoomWait);
  count = kxwan::Uninterrupted(attempt);
  return count == -1 && errno == EAGAIN ? 0 : count;
}

// 0 when everything was written, EAGAIN when the line stalled, else the error.
int WriteAll(int fd, const unsigned char* data, size_t length) {
  int stalled = 0;
  while (length > 0 && stalled < kMaxStalledWrites) {
    const ssize_t count = WriteSome(fd, data, length);
    if (count == -1) return errno;
    if (count == 0) ++stalled;
    data += count;
    length -= static_cast<size_t>(count);
  }
  return length == 0 ? 0 : EAGAIN;
}

}  // namespace

namespace kxwan {

Arrival Receive(KxSerial& port, char* buffer, size_t room, Milliseconds wait) {
  if (port.fd < 0) return {.gone = true, .at = Clock::now()};
  StopBlocking(port);
  const Look look = ReadWithinOrLate(port.fd, buffer, room, wait);
  if (look.count >= 0) return {static_cast<size_t>(look.count), look.hungUp, look.at};
  NoteReadError(port);
  return {0, true, look.at};
}

}  // namespace kxwan

int KxSerial::Read(unsigned char* buf, unsigned long len, unsigned long* got) {
  unsigned long stored = 0;
  bool failed = false;
  while (fd >= 0 && stored < len) {
    const Look look = ReadWithin(fd, buf + stored, len - stored, kSilence);
    failed = look.count == -1;
    if (look.count <= 0) break;
    stored += static_cast<unsigned long>(look.count);
  }
  if (failed) NoteReadError(*this);
  buf[stored] = '\0';
  *got = failed ? 0 : stored;
  return *got != 0 ? 1 : 0;
}

int KxSerial::Read(unsigned char* buf, int len) {
  unsigned long got = 0;
  Read(buf, static_cast<unsigned long>(std::max(len, 0)), &got);
  return static_cast<int>(got);
}

// The line does not block: a device that holds the flow off, or a host end
// that nobody reads, would keep a blocking write for ever.
int KxSerial::Write(const unsigned char* buf, unsigned long len) {
  if (fd < 0) return 0;
  if (buf == nullptr) {
    KXOutputDebug("KxSerial::Write() - lpBuffer is NULL\n");
    return 0;
  }
  if (len == 0) return 1;
  StopBlocking(*this);
  const int error = WriteAll(fd, buf, len);
  if (error == 0) return 1;
  if (error == EAGAIN) return 0;
  isOpen = 0;
  KXOutputDebug("KxSerial::Write() - Error writing to modem - %s(%d).\n", std::strerror(error),
                error);
  return 0;
}

int KxSerial::GetRXBytes(signed char* out) {
  *out = isOpen;
  return 1024;
}
