#pragma once

#include <profile/Profile.h>
#include <simulator/Device.h>
#include <simulator/line/HostWatch.h>
#include <simulator/line/Loop.h>

#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace kxsim {

// A device with a thread of its own, for a test or a tool that talks to it in the same process.
class SimulatedDevice {
 public:
  explicit SimulatedDevice(Profile profile, DeviceOptions options = {});
  // Hangs up and waits for the thread.
  ~SimulatedDevice();
  SimulatedDevice(const SimulatedDevice&) = delete;
  SimulatedDevice& operator=(const SimulatedDevice&) = delete;

  // The terminal for the host to open; empty when the system gave none.
  const std::string& Path() const { return path_; }
  // The command lines received at the device's speed, oldest first, without their end of line.
  // Of very many the oldest are forgotten.
  std::vector<std::string> Commands() const;
  void ClearCommands();
  // Takes the device away: when this returns, the host sees a hang-up.
  void HangUp();

 private:
  static constexpr size_t kMostCommands = 4096;

  DeviceOptions Observed(DeviceOptions options);

  mutable std::mutex mutex_;
  std::deque<std::string> commands_;
  Loop loop_;
  HostWatch hosts_;
  Device device_;
  std::string path_;
  std::thread thread_;
};

}  // namespace kxsim
