#include <KXWAN/serial/TtyPrivate.h>

#include <KXWAN/foundation/ClockPrivate.h>
#include <KXWAN/serial/SystemCallPrivate.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <iterator>
#include <mutex>
#include <vector>

namespace kxwan {
namespace {

// A copy of this process that holds its descriptors, for a second if nobody ends it sooner. It does
// nothing else: the copy of a program with threads may find any lock taken. Without an exit signal
// it is no child that the program's handlers or ordinary waits notice. Gives what clone gave; the
// copy does not return.
long StartHolder() {
  const long holder = syscall(SYS_clone, 0L, 0L, 0L, 0L, 0L);
  if (holder != 0) return holder;
  poll(nullptr, 0, 1000);
  for (;;) syscall(SYS_exit_group, 0L);
}

bool HasEnded(pid_t holder) {
  constexpr int kOwnChildOnly = static_cast<int>(__WCLONE);
  return Uninterrupted([&] { return waitpid(holder, nullptr, WNOHANG | kOwnChildOnly); }) != 0;
}

// Its end comes within some milliseconds, unless the device leaves the driver's requests unanswered
// as well. Gives false after 0.15 s.
bool EndHolder(pid_t holder) {
  constexpr int kChecks = 50;
  kill(holder, SIGKILL);
  for (int check = 0; check < kChecks; ++check) {
    if (HasEnded(holder)) return true;
    WaitFully(std::chrono::milliseconds(3));
  }
  return false;
}

// Those that did not end in time. The next close takes them off the system's list of processes.
class LateHolders {
 public:
  void Add(pid_t holder) {
    const std::lock_guard<std::mutex> lock(guard_);
    holders_.push_back(holder);
  }
  void ForgetEnded() {
    const std::lock_guard<std::mutex> lock(guard_);
    std::erase_if(holders_, HasEnded);
  }

 private:
  std::mutex guard_;
  std::vector<pid_t> holders_;
};

LateHolders g_lateHolders;

struct Speed {
  unsigned long bitsPerSecond;
  speed_t code;
};

// Without the hang-up speed 0.
constexpr Speed kSpeeds[] = {
    {50, B50},           {75, B75},           {110, B110},         {134, B134},
    {150, B150},         {200, B200},         {300, B300},         {600, B600},
    {1200, B1200},       {1800, B1800},       {2400, B2400},       {4800, B4800},
    {9600, B9600},       {19200, B19200},     {38400, B38400},     {57600, B57600},
    {115200, B115200},   {230400, B230400},   {460800, B460800},   {500000, B500000},
    {576000, B576000},   {921600, B921600},   {1000000, B1000000}, {1152000, B1152000},
    {1500000, B1500000}, {2000000, B2000000}, {2500000, B2500000}, {3000000, B3000000},
    {3500000, B3500000}, {4000000, B4000000},
};

template <typename Field>
const Speed* Find(Field Speed::*field, Field value) {
  const Speed* row = std::find_if(std::begin(kSpeeds), std::end(kSpeeds),
                                  [&](const Speed& speed) { return speed.*field == value; });
  return row != std::end(kSpeeds) ? row : nullptr;
}

}  // namespace

bool IsExclusive(int fd) {
  int exclusive = 0;
  return ioctl(fd, TIOCGEXCL, &exclusive) == 0 && exclusive != 0;
}

// The last close of the open file waits for the output, half a minute with most USB drivers, and
// only a signal ends that. So a process of our own closes it last, and is killed while it does.
// The signals of the program are no concern of that process and stay blocked in it.
void CloseUnsent(int fd) {
  sigset_t all;
  sigset_t former;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &former);
  g_lateHolders.ForgetEnded();
  const auto holder = static_cast<pid_t>(StartHolder());
  close(fd);
  if (holder > 0 && !EndHolder(holder)) g_lateHolders.Add(holder);
  pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

// cfsetspeed takes a speed's code for the speed itself, so that 13 would set 9600.
int SetTtySpeed(struct termios& attributes, unsigned long speed) {
  const Speed* row = Find(&Speed::bitsPerSecond, speed);
  if (row != nullptr) return cfsetspeed(&attributes, row->code);
  errno = EINVAL;
  return -1;
}

// A driver may put what its clock really gives, 115384 for 115200, beside the code. So the number
// counts only where the code says nothing.
int GetTtySpeed(int fd, unsigned long* speed) {
  struct termios attributes = {};
  if (tcgetattr(fd, &attributes) == -1) return -1;
  const Speed* row = Find(&Speed::code, cfgetispeed(&attributes));
  if (row == nullptr) return GetSpeedNumber(fd, speed);
  *speed = row->bitsPerSecond;
  return 0;
}

}  // namespace kxwan
