#include <KXWAN/serial/TtyPrivate.h>

#include <KXWAN/foundation/WaitingPrivate.h>
#include <KXWAN/serial/SystemCallPrivate.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
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

}  // namespace kxwan
