#include <poll.h>
#include <simulator/Device.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace kxsim {
namespace {

std::vector<Fault> Joined(std::vector<Fault> faults, const std::vector<Fault>& more) {
  faults.insert(faults.end(), more.begin(), more.end());
  return faults;
}

}  // namespace

Device::Device(Loop& loop, HostWatch& hosts, Profile profile, DeviceOptions options)
    : loop_(loop),
      hosts_(hosts),
      profile_(std::move(profile)),
      options_(std::move(options)),
      link_(options_.link),
      sender_(loop, terminal_,
              {.filter = [this](std::string& bytes) { Filter(bytes); },
               .blocked = [this] { UpdateEvents(); }}),
      faults_(Joined(profile_.faults, options_.faults), options_.seed),
      call_(loop, options_.onConnect,
            {.receive =
                 [this](std::string bytes) {
                   sender_.Send({std::move(bytes)});
                   UpdateEvents();
                 },
             .escaped =
                 [this] {
                   commands_.Report("OK");
                   UpdateEvents();
                 },
             .ended = [this] { commands_.Report("NO CARRIER"); }}),
      commands_(profile_, terminal_, sender_, faults_, call_,
                {.onCommand = options_.onCommand,
                 // Not from inside the sender, which is about to be cleared.
                 .onHangUp = [this](int backAfterMs) {
                   loop_.Post([=, this] { GoAway(backAfterMs); });
                 }}) {}

Device::~Device() {
  if (comeBack_) loop_.Cancel(*comeBack_);
  HangUp();
}

bool Device::Start(std::string& error) {
  if (!terminal_.Open(options_.rawTerminal)) {
    error = std::string("no pseudo-terminal: ") + strerror(errno);
    return false;
  }
  const std::optional<std::string> refusal =
      loop_.Watch(terminal_.Master(), POLLIN, [this](short ready) { OnReady(ready); });
  if (refusal) error = terminal_.Path() + ": " + *refusal;
  if (refusal || !link_.PointTo(terminal_.Path(), error)) {
    loop_.Unwatch(terminal_.Master());
    terminal_.Close();
    return false;
  }
  watch_ = hosts_.Add(terminal_.Path(), [this] { OnHostGone(); });
  return true;
}

void Device::HangUp() {
  if (!terminal_.IsOpen()) return;
  hosts_.Forget(watch_);
  loop_.Unwatch(terminal_.Master());
  call_.End();
  sender_.Clear();
  commands_.Clear();
  terminal_.Close();
  Tell(Traffic::kNote, "hung up");
}

bool Device::HearsHost() const {
  const int host = terminal_.HostSpeed();
  if (commands_.Speed() != 0) return host == commands_.Speed();
  const std::vector<int>& speeds = profile_.line.speeds;
  return host != 0 &&
         (speeds.empty() || std::find(speeds.begin(), speeds.end(), host) != speeds.end());
}

void Device::Tell(Traffic kind, std::string_view bytes) const {
  if (options_.onTraffic && !bytes.empty()) options_.onTraffic(kind, bytes);
}

void Device::Filter(std::string& bytes) const {
  // A host that listens at another speed hears nothing.
  if (!HearsHost()) bytes.clear();
  // Deliberate: a terminal that echoes by itself would hand the data back for ever.
  if (call_.CarriesData() && terminal_.HostEchoes()) bytes.clear();
  Tell(Traffic::kToHost, bytes);
}

void Device::UpdateEvents() {
  if (!terminal_.IsOpen()) return;
  const bool full = sender_.Waiting() >= kMostUnread;
  const bool listens = !call_.CarriesData() || (!full && call_.TakesMore());
  const int events = (listens ? POLLIN : 0) | (sender_.Blocked() ? POLLOUT : 0);
  loop_.SetEvents(terminal_.Master(), static_cast<short>(events));
  call_.HoldBack(full);
}

void Device::OnReady(short events) {
  // What the last host has left behind ends before the next one is heard.
  hosts_.Check();
  if ((events & POLLOUT) != 0) sender_.OnWritable();
  char bytes[4096];
  const ssize_t count = (events & POLLIN) != 0 ? read(terminal_.Master(), bytes, sizeof bytes) : 0;
  if (count > 0) OnBytes(std::string_view(bytes, static_cast<size_t>(count)));
  UpdateEvents();
}

void Device::OnBytes(std::string_view bytes) {
  if (!HearsHost()) {
    Tell(Traffic::kNote, "not heard at " + std::to_string(terminal_.HostSpeed()));
    const std::string noise = faults_.NoiseFor(bytes.size());
    // Rubbish reaches the host whatever its speed.
    [[maybe_unused]] const ssize_t sent = write(terminal_.Master(), noise.data(), noise.size());
    return;
  }
  Tell(Traffic::kFromHost, bytes);
  if (call_.CarriesData()) {
    call_.Send(bytes);
  } else {
    commands_.Take(bytes);
  }
}

void Device::OnHostGone() {
  terminal_.ForgetHost();
  // AT&D0: the fall of DTR means nothing to the device.
  if (commands_.HeedsHost()) call_.End();
}

void Device::GoAway(int backAfterMs) {
  HangUp();
  if (backAfterMs == 0) return;
  comeBack_ = loop_.At(Loop::Clock::now() + std::chrono::milliseconds(backAfterMs), [this] {
    comeBack_.reset();
    commands_.PowerUp();
    std::string error;
    Tell(Traffic::kNote, Start(error) ? "back again" : error);
  });
}

}  // namespace kxsim
