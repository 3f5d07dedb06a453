#pragma once

#include <sys/stat.h>
#include <tool/kxwan/Failure.h>

#include <string>
#include <vector>

namespace kxtool {

enum class PortState { kFree, kBusy, kNoPermission, kMissing, kNoSerialPort, kBroken };

// What opening a path would give, found out by opening and closing it: nothing less is sure. The
// port's control lines are up for that moment.
struct PortCheck {
  PortState state = PortState::kFree;
  std::string detail;  // busy: who has it, if known; no permission: the group that may; else errno
};

PortCheck CheckPort(const std::string& path);

// "free", "busy", "no permission" and so on.
const char* PortStateName(PortState state);

// One sentence for a port that is not free: what is wrong and what to do.
Failure PortFailure(const std::string& path, const PortCheck& check);

// Whether both are states of one and the same terminal. Its device number alone does not tell:
// every instance of devpts, such as a container's, counts from 0.
bool IsSameTerminal(const struct stat& one, const struct stat& other);

struct ListedPort {
  std::string name;
  std::string path;
};

// The machine's serial devices.
std::vector<ListedPort> ListPorts();

}  // namespace kxtool
