#include <poll.h>
#include <simulator/Device.h>
#include <unistd.h>

#include <algorithm>

namespace kxsim {

Device::Device(Loop& loop, Profile profile, DeviceOptions options)
    : loop_(loop),
      profile_(std::move(profile)),
      options_(std::move(options)),
      sender_(loop, terminal_),
      interpreter_(profile_),
      speed_(profile_.line.baud) {
  sender_.SetFilter([this](std::string& bytes) {
    // A host that listens at another speed hears nothing.
    if (!HearsHost()) bytes.clear();
  });
}

Device::~Device() { HangUp(); }

bool Device::Start() {
  if (!terminal_.Open(options_.rawTerminal)) return false;
  WatchTerminal();
  return true;
}

void Device::HangUp() {
  if (!terminal_.IsOpen()) return;
  loop_.Unwatch(terminal_.Master());
  sender_.Clear();
  terminal_.Close();
}

bool Device::HearsHost() const {
  const int host = terminal_.HostSpeed();
  if (!profile_.line.autobaud) return host == speed_;
  const std::vector<int>& speeds = profile_.line.speeds;
  return host != 0 &&
         (speeds.empty() || std::find(speeds.begin(), speeds.end(), host) != speeds.end());
}

void Device::WatchTerminal() {
  const short events = sender_.Blocked() ? POLLIN | POLLOUT : POLLIN;
  loop_.Watch(terminal_.Master(), events, [this](short ready) { OnReady(ready); });
}

void Device::OnReady(short events) {
  if ((events & POLLOUT) != 0) sender_.OnWritable();
  char bytes[4096];
  const ssize_t count = read(terminal_.Master(), bytes, sizeof bytes);
  if (count > 0 && HearsHost()) OnBytes(std::string_view(bytes, static_cast<size_t>(count)));
  if (terminal_.IsOpen()) {
    loop_.SetEvents(terminal_.Master(), sender_.Blocked() ? POLLIN | POLLOUT : POLLIN);
  }
}

void Device::OnBytes(std::string_view bytes) {
  // Deliberate: a terminal that echoes by itself would hand our echo back as the next command.
  const bool echo = interpreter_.Talk().echo && !terminal_.HostEchoes();
  for (const char byte : bytes) {
    if (echo) sender_.Send({std::string(1, byte)});
    if (std::optional<std::string> line = editor_.Feed(byte)) OnLine(std::move(*line));
  }
}

void Device::OnLine(std::string line) {
  if (options_.onCommand) options_.onCommand(line);
  if (lines_.size() < kMostLines) lines_.push_back(std::move(line));
  RunNextLine();
}

void Device::RunNextLine() {
  if (busy_ || lines_.empty()) return;
  const std::string line = std::move(lines_.front());
  lines_.pop_front();
  busy_ = true;
  Say(interpreter_.Execute(line));
}

void Device::Say(const Outcome& outcome) {
  using std::chrono::milliseconds;
  std::vector<std::string> pieces = outcome.raw;
  if (pieces.empty()) pieces.push_back(interpreter_.Spoken(outcome));
  milliseconds pause(outcome.latencyMs + profile_.line.latencyMs);
  for (size_t i = 0; i < pieces.size(); ++i) {
    Chunk chunk{std::move(pieces[i]), pause};
    if (i + 1 == pieces.size()) {
      chunk.sent = [this, speed = outcome.newSpeed] {
        if (speed != 0) speed_ = speed;
        busy_ = false;
        RunNextLine();
      };
    }
    sender_.Send(std::move(chunk));
    pause = milliseconds(outcome.gapMs);
  }
}

}  // namespace kxsim
