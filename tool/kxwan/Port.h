#pragma once

#include <KXWAN/KXWAN.h>
#include <tool/kxwan/Failure.h>

#include <memory>
#include <string>
#include <vector>

namespace kxsim {
struct Profile;
class SimulatedDevice;
}  // namespace kxsim

namespace kxtool {

// A PORT as the user gives it, "/dev/ttyUSB0", "sim:NAME" or "sim:FILE.toml", and the device on
// it.
class Port {
 public:
  explicit Port(std::string name);
  ~Port();  // closes
  Port(const Port&) = delete;
  Port& operator=(const Port&) = delete;

  // Starts the simulated device where it is one and opens the port at 19200 bit/s.
  Result Open();
  // The same with a simulated device that has no file.
  Result Open(kxsim::Profile profile);
  void Close() { device_.Close(); }

  const std::string& Name() const { return name_; }
  const std::string& Path() const { return path_; }  // what was opened
  CSWirelessModem& Device() { return device_; }
  CSModem* Modem() { return device_.m_pModem; }
  kxsim::SimulatedDevice* Simulated() { return simulated_.get(); }  // null for a real port

 private:
  Result Load(const std::string& profileName, kxsim::Profile& profile) const;
  Result OpenPath();

  std::string name_;
  std::string path_;
  std::unique_ptr<kxsim::SimulatedDevice> simulated_;  // outlives the open port
  CSWirelessModem device_;
};

// The names behind "sim:".
std::vector<std::string> SimulatedNames();

}  // namespace kxtool
