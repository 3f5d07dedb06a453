#include <KXWAN/serial/KxSerial.h>

#include <KXWAN/foundation/ClockPrivate.h>
#include <KXWAN/foundation/DebugLog.h>
#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/serial/SystemCallPrivate.h>
#include <KXWAN/serial/TtyPrivate.h>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <iterator>
#include <mutex>
#include <new>

kxwan::PortSlot portList[6];
int32_t nextPortID = -1;

namespace {

std::mutex g_slotGuard;

template <typename Test>
kxwan::PortSlot* FindSlot(Test test) {
  auto slot = std::find_if(std::begin(portList), std::end(portList), test);
  return slot == std::end(portList) ? nullptr : slot;
}

// Compares what a slot can hold, so that a longer path is noticed too.
bool HoldsPath(const kxwan::PortSlot& slot, const char* path) {
  return slot.id != 0 && std::strncmp(slot.path, path, sizeof slot.path - 1) == 0;
}

// O_NONBLOCK, as an open must not wait for a carrier. O_NOCTTY, or a hang-up of the modem could end
// the program.
int OpenTty(const char* path) {
  return kxwan::Uninterrupted(
      [&] { return open(path, O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); });
}

// Deliberate: the ports of one driver, "vspbb", may refuse the first open and take the second.
int OpenTtyPatiently(const char* path) {
  const int fd = OpenTty(path);
  return fd == -1 && std::strstr(path, "vspbb") != nullptr ? OpenTty(path) : fd;
}

// The input flags stay: whoever talks over the line decides what may be translated. Framing and
// flow control stay the device's own.
struct termios RawAttributes(struct termios attributes) {
  attributes.c_oflag &= ~static_cast<tcflag_t>(OPOST);
  attributes.c_cflag |= static_cast<tcflag_t>(CREAD | CLOCAL);
  attributes.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ECHOE | ISIG);
  attributes.c_cc[VMIN] = 0;
  attributes.c_cc[VTIME] = 1;
  kxwan::SetTtySpeed(attributes, 19200);
  return attributes;
}

// Takes a tty over. Gives null, or the record to log for the step that failed, with errno as that
// step left it.
const char* TakeOver(KxSerial& port, const char* path) {
  port.fd = OpenTtyPatiently(path);
  port.blocking = true;
  port.exclusive = false;
  if (port.fd == -1) return "KxSerial::Open() - Error opening '%s' - %s(%d).\n";
  const bool isTaken = kxwan::IsExclusive(port.fd);
  if (ioctl(port.fd, TIOCEXCL) != 0) return "KxSerial::Open() - Getting TIOCEXCL '%s' - %s(%d).\n";
  port.exclusive = !isTaken;
  if (fcntl(port.fd, F_SETFL, 0) == -1) {
    return "KxSerial::Open() - Error clearing O_NONBLOCK '%s' - %s(%d).\n";
  }
  if (tcgetattr(port.fd, &port.savedAttributes) == -1) {
    return "KxSerial::Open() - Error getting tty attributes '%s' - %s(%d).\n";
  }
  if (kxwan::SetAttributes(port.fd, RawAttributes(port.savedAttributes)) == -1) {
    // Deliberate: no quotes around this path.
    return "KxSerial::Open() - Error setting tty attributes %s - %s(%d).\n";
  }
  return nullptr;
}

// Whether what was written last has gone out. It gets three tenths of a second for that.
bool FinishOutput(int fd) {
  constexpr int kChecks = 30;
  for (int check = 0; check < kChecks; ++check) {
    int left = 0;
    if (ioctl(fd, TIOCOUTQ, &left) != 0 || left == 0) return true;
    kxwan::WaitFully(std::chrono::milliseconds(10));
  }
  tcflush(fd, TCOFLUSH);
  return false;
}

// On a pseudo-terminal the exclusive flag outlives the close while the other end stays open. One
// that another's open had set, which the superuser is let through, stays.
void GiveUpExclusiveUse(KxSerial& port) {
  if (port.exclusive) ioctl(port.fd, TIOCNXCL);
  port.exclusive = false;
}

}  // namespace

KxSerial::KxSerial()
    : portID(kxwan::kNoPortID),
      fd(-1),
      savedAttributes(),
      isOpen(0),
      debugPath(),
      lineGeneration(0),
      blocking(true),
      exclusive(false) {}

KxSerial::~KxSerial() { Close(); }

int KxSerial::Open(CString& path) {
  Close();  // an object owns one tty; the descriptor of an earlier one must not leak
  const char* device = path.String();
  KXOutputDebug("KxSerial::Open() - '%s' Opening\n", GetDebugDevicePath(device));
  // Deliberate: a port that got no slot opens all the same. The table is a record for the log; the
  // exclusive flag is the lock.
  portID = AllocatePortID(device);
  const char* complaint = TakeOver(*this, device);
  if (complaint != nullptr) {
    const int error = errno;
    KXOutputDebug(complaint, GetDebugDevicePath(device), std::strerror(error), error);
    GiveUpExclusiveUse(*this);
    if (fd != -1) close(fd);
    fd = -1;
    DeallocatePortID(portID);
    portID = kxwan::kNoPortID;
    isOpen = 0;
    return 0;
  }
  KXOutputDebug("KxSerial::Open() - '%s' Success\n", GetDebugDevicePath(device));
  isOpen = 1;
  ++lineGeneration;
  return 1;
}

int KxSerial::Open(const char* path) {
  kxwan::ScopedText text(path);
  return Open(text);
}

void KxSerial::Close() {
  if (fd < 0) return;
  KXOutputDebug("KxSerial::Close()\n");
  DeallocatePortID(portID);
  portID = kxwan::kNoPortID;
  const bool finished = FinishOutput(fd);
  if (kxwan::SetAttributes(fd, savedAttributes) == -1) {
    const int error = errno;
    KXOutputDebug("KxSerial::Close() - Error resetting tty attributes - %s(%d).\n",
                  std::strerror(error), error);
  }
  GiveUpExclusiveUse(*this);
  if (finished) {
    close(fd);
  } else {
    kxwan::CloseUnsent(fd);
  }
  fd = -1;
}

uint32_t KxSerial::AllocatePortID(const char* path) {
  const std::lock_guard<std::mutex> lock(g_slotGuard);
  if (nextPortID == -1) {
    nextPortID = 0x103;
    std::fill(std::begin(portList), std::end(portList), kxwan::PortSlot{});
  }
  if (FindSlot([&](const kxwan::PortSlot& slot) { return HoldsPath(slot, path); }) != nullptr) {
    KXOutputDebug("KxSerial::AllocatePortID() - port %s is already open\n",
                  GetDebugDevicePath(path));
    return kxwan::kNoPortID;
  }
  kxwan::PortSlot* slot = FindSlot([](const kxwan::PortSlot& each) { return each.id == 0; });
  if (slot == nullptr) {
    KXOutputDebug("KxSerial::AllocatePortID() - no port slots available\n");
    return kxwan::kNoPortID;
  }
  slot->id = static_cast<uint32_t>(++nextPortID);
  kxwan::CopyText(slot->path, sizeof slot->path, path);
  KXOutputDebug("KxSerial::AllocatePortID() ID:0x%X, path:%s\n", slot->id,
                GetDebugDevicePath(path));
  return slot->id;
}

void KxSerial::DeallocatePortID(uint32_t id) {
  const std::lock_guard<std::mutex> lock(g_slotGuard);
  kxwan::PortSlot* slot =
      FindSlot([&](const kxwan::PortSlot& each) { return each.id != 0 && each.id == id; });
  if (slot == nullptr) {
    KXOutputDebug("KxSerial::DeallocatePortID() - ID:0x%X is not open\n", id);
    return;
  }
  KXOutputDebug("KxSerial::DeallocatePortID() ID:0x%X, path:%s\n", id,
                GetDebugDevicePath(slot->path));
  slot->id = 0;
  slot->path[0] = '\0';
}

char* KxSerial::GetDebugDevicePath(const char* path) {
  kxwan::CopyText(debugPath, sizeof debugPath, path);
  for (char* at = debugPath; *at != '\0'; ++at) {
    if (!kxwan::IsPrintable(*at)) *at = '?';
  }
  return debugPath;
}

int CreateISSerial(void** out) {
  *out = new (std::nothrow) KxSerial;
  return *out == nullptr ? -1 : 0;
}

void DeleteISSerial(void* port) { delete static_cast<KxSerial*>(port); }
