#include <tool/kxwan/Reading.h>

#include <tool/kxwan/Device.h>
#include <tool/kxwan/Text.h>

namespace kxtool {
namespace {

// How long, and how often, each command of a reading is tried.
struct Patience {
  uint32_t timeoutMs;
  int32_t tries;
};

constexpr unsigned long kTimeoutMs = 5000;

constexpr Patience kReadings[] = {{4000, 1}, {4000, 2}, {4000, 2}};

// Waits longer for the answers of a device as long as the object lives.
class Patiently {
 public:
  explicit Patiently(CSModem* modem)
      : modem_(*modem), before_{modem->m_dwResponseTimeout, modem->m_nRetries} {}
  ~Patiently() { Use(before_); }
  Patiently(const Patiently&) = delete;
  Patiently& operator=(const Patiently&) = delete;

  void Use(const Patience& patience) {
    modem_.m_dwResponseTimeout = patience.timeoutMs;
    modem_.m_nRetries = patience.tries;
  }

 private:
  CSModem& modem_;
  const Patience before_;
};

Failure TooLate(const Port& port) {
  return DeviceFailed("The device on " + Printable(port.Name()) +
                      " answered too late to some of the commands, so that what it told is not "
                      "complete. Try again when it is idle, or ask for what you need with \"kxwan "
                      "at\" and a longer --timeout.");
}

// What a reading that was broken off may have left: the device then answers otherwise.
void EndErrorNumbers(Port& port) { Ask(port, "AT+CMEE=0", kTimeoutMs); }

}  // namespace

// Where a result came that no exchange could take, silence may have been lateness.
Reading ReadInTime(Port& port, const std::function<void()>& read) {
  constexpr int kSilentReadings = 2;  // of the same commands, before they count as ignored
  Patiently patiently(port.Modem());
  Reading reading;
  int silent = 0;
  for (const Patience& patience : kReadings) {
    patiently.Use(patience);
    const kxwan::AnswerCounts before = kxwan::CountAnswers(port.Modem());
    read();
    reading.ignored = kxwan::CountAnswers(port.Modem()).unanswered - before.unanswered;
    if (reading.ignored == 0) return reading;
    reading.failure = CheckAnswers(port);
    if (reading.failure) return reading;
    EndErrorNumbers(port);
    if (kxwan::CountAnswers(port.Modem()).late == before.late) ++silent;
    if (silent == kSilentReadings) return reading;
  }
  reading.failure = TooLate(port);
  return reading;
}

void ShowIgnored(uint32_t ignored, Report& report) {
  if (ignored == 0) return;
  const char* unit =
      ignored == 1 ? "command, left without an answer" : "commands, left without an answer";
  report.Fact("ignored", "Ignored", ignored, unit);
}

Result CheckAnswers(Port& port) {
  constexpr int kLongestDoubt = 4;  // times the three seconds in which a line may be settled
  int result = kxwan::kResultInDoubt;
  for (int i = 0; i < kLongestDoubt && result == kxwan::kResultInDoubt; ++i) {
    const Exchange exchange = Ask(port, "ATE0V1", kTimeoutMs);
    if (exchange.Came()) return {};
    result = exchange.result;
  }
  return NoAnswer(port, result);
}

Failure NoAnswer(const Port& port, int result) {
  const std::string device = "The device on " + Printable(port.Name());
  switch (result) {
    case kxwan::kResultDeviceGone:
      return DeviceFailed(device + " has left: it was unplugged, or the line hung up.");
    case kxwan::kResultInDoubt:
      return TooLate(port);
    case kxwan::kResultNotSent:
      return DeviceFailed(
          device + " takes nothing: is it on, and its flow control (RTS/CTS) as the port's?");
    default:
      return DeviceFailed(device + " stopped answering: is it still there?");
  }
}

}  // namespace kxtool
