#pragma once

#include <simulator/line/Loop.h>

#include <functional>
#include <map>
#include <string>

namespace kxsim {

// Tells when the last host closes a terminal, as a device sees its DTR line fall. One serves all
// the devices of a loop. Where the system cannot tell, nothing is told.
class HostWatch {
 public:
  explicit HostWatch(Loop& loop);
  ~HostWatch();
  HostWatch(const HostWatch&) = delete;
  HostWatch& operator=(const HostWatch&) = delete;

  // The number to give to Forget.
  int Add(const std::string& path, std::function<void()> gone);
  void Forget(int watch);
  // Tells now what has happened so far.
  void Check();

 private:
  struct Terminal {
    int opened = 0;
    bool closed = false;
    std::function<void()> gone;
  };

  Loop& loop_;
  int descriptor_;
  std::map<int, Terminal> terminals_;
};

}  // namespace kxsim
