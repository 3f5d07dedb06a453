// Can one process play many devices, each at the true pace of its line? Fifty devices at 9600 bit/s
// on one loop answer at the same time; the counters are the slowest and the quickest answer over
// the time that the line needs, and the resident memory.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <poll.h>
#include <simulator/Device.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kDevices = 50;
constexpr size_t kReplyBytes = 960;  // a second at ten bits a byte

struct Host {
  int fd = -1;
  size_t received = 0;
  double seconds = 0;
};

kxsim::Profile PacedDevice() {
  kxsim::Profile profile = kxsim::ScriptedProfile({});
  kxsim::Answer answer;
  answer.raw = {std::string(kReplyBytes, 'x')};
  kxsim::AddReply(profile, "AT", answer);
  profile.line.baud = 9600;
  kxsim::Fault pace;
  pace.kind = "pace";
  profile.faults.push_back(pace);
  return profile;
}

int OpenRaw(const std::string& path) {
  const int fd = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
  termios attributes = {};
  tcgetattr(fd, &attributes);
  cfmakeraw(&attributes);
  cfsetspeed(&attributes, B9600);
  tcsetattr(fd, TCSANOW, &attributes);
  return fd;
}

void Receive(Host& host, Clock::time_point start) {
  char bytes[4096];
  const ssize_t count = read(host.fd, bytes, sizeof bytes);
  if (count > 0) host.received += static_cast<size_t>(count);
  if (host.received == kReplyBytes) {
    host.seconds = std::chrono::duration<double>(Clock::now() - start).count();
  }
}

// Asks all of them at once and waits for the last byte of each. False when one stays silent.
bool AskAll(std::vector<Host>& hosts) {
  const Clock::time_point start = Clock::now();
  for (Host& host : hosts) {
    host.received = 0;
    if (write(host.fd, "AT\r", 3) != 3) return false;
  }
  const auto unfinished = [](const Host& host) { return host.received < kReplyBytes; };
  while (std::any_of(hosts.begin(), hosts.end(), unfinished)) {
    std::vector<pollfd> watched;
    watched.reserve(hosts.size());
    for (const Host& host : hosts) watched.push_back({host.fd, POLLIN, 0});
    if (poll(watched.data(), watched.size(), 5000) <= 0) return false;
    for (size_t i = 0; i < hosts.size(); ++i) {
      if (watched[i].revents != 0) Receive(hosts[i], start);
    }
  }
  return true;
}

double ResidentMiB() {
  long pages = 0;
  std::unique_ptr<FILE, int (*)(FILE*)> statm(fopen("/proc/self/statm", "r"), fclose);
  if (statm == nullptr || fscanf(statm.get(), "%*d %ld", &pages) != 1) return 0;
  return static_cast<double>(pages * sysconf(_SC_PAGESIZE)) / (1 << 20);
}

void FiftyPacedDevices(benchmark::State& state) {
  kxsim::Loop loop;
  kxsim::HostWatch watch(loop);
  std::vector<std::unique_ptr<kxsim::Device>> devices;
  std::vector<Host> hosts(kDevices);
  std::string error;
  for (Host& host : hosts) {
    devices.push_back(
        std::make_unique<kxsim::Device>(loop, watch, PacedDevice(), kxsim::DeviceOptions{}));
    if (!devices.back()->Start(error)) return state.SkipWithError(error.c_str());
    host.fd = OpenRaw(devices.back()->Path());
  }
  std::thread player([&] { loop.Run(); });
  for (auto _ : state) {
    if (!AskAll(hosts)) state.SkipWithError("a device stayed silent");
  }
  const auto quicker = [](const Host& a, const Host& b) { return a.seconds < b.seconds; };
  const double ideal = kReplyBytes * 10 / 9600.0;
  const auto [first, last] = std::minmax_element(hosts.begin(), hosts.end(), quicker);
  state.counters["quickest"] = first->seconds / ideal;
  state.counters["slowest"] = last->seconds / ideal;
  state.counters["resident_MiB"] = ResidentMiB();
  loop.Stop();
  player.join();
  for (const Host& host : hosts) close(host.fd);
}
BENCHMARK(FiftyPacedDevices)->Iterations(2)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
