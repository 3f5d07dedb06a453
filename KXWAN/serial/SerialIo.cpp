#include <KXWAN/foundation/DebugLog.h>
#include <KXWAN/serial/KxSerial.h>
#include <KXWAN/serial/SystemCallPrivate.h>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds kSilence(100);  // what VTIME stands for
constexpr Milliseconds kRoomWait(500);
constexpr int kMaxStalledWrites = 3;

// One read, which ends with 0 after a tenth of a second of silence. The system counts the silence
// anew when a signal interrupts it; the deadline keeps a program with a fast timer from waiting for
// ever.
ssize_t ReadSome(int fd, unsigned char* buffer, size_t length) {
  const auto deadline = Clock::now() + kSilence;
  for (;;) {
    const ssize_t count = read(fd, buffer, length);
    if (count != -1 || errno != EINTR) return count;
    if (Clock::now() >= deadline) return 0;
  }
}

void AwaitRoom(int fd) {
  const auto deadline = Clock::now() + kRoomWait;
  struct pollfd line = {fd, POLLOUT, 0};
  auto left = kRoomWait;
  while (left.count() > 0 && poll(&line, 1, static_cast<int>(left.count())) == -1 &&
         errno == EINTR) {
    left = std::chrono::duration_cast<Milliseconds>(deadline - Clock::now());
  }
}

// One write to a line that does not block. 0 when the line has taken nothing for half a second.
ssize_t WriteSome(int fd, const unsigned char* data, size_t length) {
  const auto attempt = [&] { return write(fd, data, length); };
  ssize_t count = kxwan::Uninterrupted(attempt);
  if (count != -1 || errno != EAGAIN) return count;
  AwaitRoom(fd);
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

int KxSerial::Read(unsigned char* buf, unsigned long len, unsigned long* got) {
  unsigned long stored = 0;
  bool failed = false;
  while (fd >= 0 && stored < len) {
    const ssize_t count = ReadSome(fd, buf + stored, len - stored);
    if (count == 0) break;
    if (count < 0) {
      const int error = errno;
      isOpen = 0;
      KXOutputDebug("KxSerial::Read() - Error reading from modem - %s(%d).\n", std::strerror(error),
                    error);
      failed = true;
      break;
    }
    stored += static_cast<unsigned long>(count);
  }
  buf[stored] = '\0';
  *got = failed ? 0 : stored;
  return *got != 0 ? 1 : 0;
}

int KxSerial::Read(unsigned char* buf, int len) {
  unsigned long got = 0;
  Read(buf, static_cast<unsigned long>(std::max(len, 0)), &got);
  return static_cast<int>(got);
}

// The line does not block while it is written to: a device that holds the flow off, or a host end
// that nobody reads, would keep a blocking write for ever.
int KxSerial::Write(const unsigned char* buf, unsigned long len) {
  if (fd < 0) return 0;
  if (buf == nullptr) {
    KXOutputDebug("KxSerial::Write() - lpBuffer is NULL\n");
    return 0;
  }
  if (len == 0) return 1;
  fcntl(fd, F_SETFL, O_NONBLOCK);
  const int error = WriteAll(fd, buf, len);
  fcntl(fd, F_SETFL, 0);
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
