#include <tool/kxwan/PortCheck.h>

#include <KXWAN/KXWAN.h>
#include <fcntl.h>
#include <grp.h>
#include <sys/ioctl.h>
#include <tool/kxwan/Text.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace kxtool {
namespace {

#ifdef TIOCGEXCL
constexpr unsigned long kExclusiveQuery = TIOCGEXCL;
#else
constexpr unsigned long kExclusiveQuery = 0;  // a request that every system refuses
#endif

struct StateRow {
  PortState state;
  const char* name;
  ExitStatus exitStatus;
  const char* sentence;  // "%p" is the path, "%d" the detail
};

constexpr StateRow kStates[] = {
    {PortState::kFree, "free", kDone, ""},
    {PortState::kBusy, "busy", kDeviceFailed,
     "The port %p is busy: %d has it open. End that program or choose another port."},
    {PortState::kNoPermission, "no permission", kDeviceFailed,
     "You may not open %p. It belongs to the group %d: add yourself with \"sudo usermod -aG %d "
     "$USER\" and log in again."},
    {PortState::kMissing, "missing", kWrongCall, "There is no port \"%p\". %d"},
    {PortState::kNoSerialPort, "no serial port", kWrongCall,
     "%p is not a serial port. \"kxwan ports\" lists the ports that there are."},
    {PortState::kBroken, "broken", kDeviceFailed,
     "The port %p cannot be opened: %d. Is the device still plugged in?"},
};

const StateRow& RowOf(PortState state) {
  return *std::find_if(std::begin(kStates), std::end(kStates),
                       [&](const StateRow& row) { return row.state == state; });
}

std::string Filled(std::string_view text, const std::string& path, const std::string& detail) {
  std::string filled;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text.substr(i, 2) == "%p") {
      filled += Printable(path.substr(0, 200));
      ++i;
    } else if (text.substr(i, 2) == "%d") {
      filled += detail;
      ++i;
    } else {
      filled += text[i];
    }
  }
  return filled;
}

bool HasOpen(const std::filesystem::path& process, const struct stat& terminal) {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(process / "fd", error)) {
    struct stat status;
    if (stat(entry.path().c_str(), &status) == 0 && IsSameTerminal(status, terminal)) return true;
  }
  return false;
}

// The process that has the terminal open, as "pppd (process 1234)"; empty when the system does not
// tell.
std::string HolderOf(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return {};
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
    const std::string id = entry.path().filename();
    if (id.find_first_not_of("0123456789") != id.npos || id == std::to_string(getpid()) ||
        !HasOpen(entry.path(), status)) {
      continue;
    }
    std::string name;
    std::getline(std::ifstream(entry.path() / "comm"), name);
    return Printable(name) + " (process " + id + ")";
  }
  return {};
}

std::string GroupOf(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return "dialout";
  const group* owner = getgrgid(status.st_gid);
  return owner != nullptr ? owner->gr_name : std::to_string(status.st_gid);
}

std::string PortsThereAre() {
  std::vector<std::string> paths;
  for (const ListedPort& port : ListPorts()) paths.push_back(Printable(port.path));
  if (paths.empty()) return "This machine has no serial port; sim:NAME is a simulated one.";
  return "The ports here are: " + Joined(paths, ", ") + ".";
}

PortCheck BusyPort(const std::string& holder) {
  return {PortState::kBusy, holder.empty() ? "another program" : holder};
}

// Root gets past another program's exclusive use, so it is asked for. A flag that nobody stands
// behind was left by a program that died.
PortCheck CheckOpened(int descriptor, const std::string& path) {
  if (isatty(descriptor) == 0) return {PortState::kNoSerialPort, ""};
  int exclusive = 0;
  if (ioctl(descriptor, kExclusiveQuery, &exclusive) != 0 || exclusive == 0) {
    return {PortState::kFree, ""};
  }
  const std::string holder = HolderOf(path);
  return holder.empty() ? PortCheck{PortState::kFree, ""} : BusyPort(holder);
}

PortCheck CheckRefused(int error, const std::string& path) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
    case ENAMETOOLONG:
      return {PortState::kMissing, PortsThereAre()};
    case EBUSY:
      return BusyPort(HolderOf(path));
    case EACCES:
    case EPERM:
      return {PortState::kNoPermission, GroupOf(path)};
    default:
      return {PortState::kBroken, std::strerror(error)};
  }
}

}  // namespace

PortCheck CheckPort(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) == 0 && !S_ISCHR(status.st_mode)) {
    return {PortState::kNoSerialPort, ""};
  }
  const int descriptor = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return CheckRefused(errno, path);
  PortCheck check = CheckOpened(descriptor, path);
  close(descriptor);
  return check;
}

const char* PortStateName(PortState state) { return RowOf(state).name; }

Failure PortFailure(const std::string& path, const PortCheck& check) {
  const StateRow& row = RowOf(check.state);
  return {Filled(row.sentence, path, check.detail), row.exitStatus};
}

bool IsSameTerminal(const struct stat& one, const struct stat& other) {
  return S_ISCHR(one.st_mode) && S_ISCHR(other.st_mode) && one.st_rdev == other.st_rdev &&
         one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

std::vector<ListedPort> ListPorts() {
  std::vector<ListedPort> ports;
  char name[256] = "";
  char path[1024] = "";
  bool found = KXModemFindFirst(name, sizeof name - 1, path, sizeof path - 1);
  while (found) {
    ports.push_back({name, path});
    found = KXModemFindNext(name, sizeof name - 1, path, sizeof path - 1);
  }
  return ports;
}

}  // namespace kxtool
