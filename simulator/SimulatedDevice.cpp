#include <simulator/SimulatedDevice.h>

#include <future>
#include <utility>

namespace kxsim {

SimulatedDevice::SimulatedDevice(Profile profile, DeviceOptions options)
    : hosts_(loop_), device_(loop_, hosts_, std::move(profile), Observed(std::move(options))) {
  std::string error;
  if (device_.Start(error)) path_ = device_.Path();
  thread_ = std::thread([this] { loop_.Run(); });
}

SimulatedDevice::~SimulatedDevice() {
  loop_.Stop();
  thread_.join();
}

DeviceOptions SimulatedDevice::Observed(DeviceOptions options) {
  options.onCommand = [this, also = options.onCommand](const std::string& line) {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      commands_.push_back(line);
      if (commands_.size() > kMostCommands) commands_.pop_front();
    }
    if (also) also(line);
  };
  return options;
}

std::vector<std::string> SimulatedDevice::Commands() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return {commands_.begin(), commands_.end()};
}

void SimulatedDevice::ClearCommands() {
  const std::lock_guard<std::mutex> lock(mutex_);
  commands_.clear();
}

void SimulatedDevice::HangUp() {
  if (path_.empty()) return;
  std::promise<void> done;
  loop_.Post([&] {
    device_.HangUp();
    done.set_value();
  });
  done.get_future().wait();
}

}  // namespace kxsim
