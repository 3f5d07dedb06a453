#include <tool/kxwan/Recorder.h>

#include <recording/Anonymiser.h>
#include <simulator/SimulatedDevice.h>
#include <tool/kxwan/Device.h>
#include <tool/kxwan/Observe.h>
#include <tool/kxwan/PrivateText.h>
#include <tool/kxwan/Progress.h>
#include <tool/kxwan/Reading.h>
#include <tool/kxwan/Text.h>

namespace kxtool {
namespace {

constexpr unsigned long kTimeoutMs = 5000;
constexpr unsigned long kSearchTimeoutMs = 1000;

// The test and read forms of everything that the library sends, and the numbers of the device and
// its owner, so that they are known wherever they occur. None of them changes a setting.
constexpr const char* kQueries[] = {
    "AT+CGSN",      "AT+GSN",      "AT+CIMI",      "AT+CNUM",    "AT+CCID",     "AT+GMI",
    "AT+CGMI",      "AT+GMM",      "AT+CGMM",      "AT+GMR",     "AT+CGMR",     "AT+FMFR?",
    "AT+FMDL?",     "ATI",         "ATI0",         "ATI1",       "ATI2",        "ATI3",
    "ATI4",         "ATI5",        "ATI6",         "ATI7",       "ATI8",        "ATI9",
    "AT+GCAP",      "AT+GCAP?",    "AT+IPR?",      "AT+IPR=?",   "AT+CFUN?",    "AT+CFUN=?",
    "AT+CSQ",       "AT+CSQ?",     "AT+CSQ=?",     "AT+CBC",     "AT+CBC?",     "AT+CBC=?",
    "AT+CAD?",      "AT+CREG?",    "AT+CGREG?",    "AT+CGATT?",  "AT+CGATT=?",  "AT+CGDCONT?",
    "AT+CGDCONT=?", "AT+CGQMIN?",  "AT+CGQMIN=?",  "AT+CGQREQ?", "AT+CGQREQ=?", "AT+CGEQMIN?",
    "AT+CGEQMIN=?", "AT+CGEQREQ?", "AT+CGEQREQ=?", "AT+CPWD=?",  "AT+CLCK=?",   "AT+CRM?",
    "AT+CRM=?",     "AT+CSO?",     "AT+CSO=?",     "AT$QCMDR?",  "AT$QCMDR=?",  "AT$QCQNC?",
    "AT$QCMIP?",    "AT$QCMIP=?",  "AT$QCSCRM?",   "AT+NWHFUN?", "AT+NWHFUN=?",
};

// Asked with numeric error reports, as the library asks them. The last report mode asked for is
// put back afterwards.
constexpr const char* kReportQueries[] = {"AT+CMEE=1;+CPIN?", "AT+CMEE=1", "AT+CPIN?", "AT+CMEE=0"};

Result FindSpeedAndEcho(Port& port, const Report& report, unsigned long& speed, bool& echo) {
  constexpr unsigned long kSpeeds[] = {115200, 9600, 57600, 19200, 230400, 38400, 460800};
  const Progress progress("searching the speed at which the device answers", !report.IsJson());
  for (const unsigned long candidate : kSpeeds) {
    speed = candidate;
    std::string reply;
    const bool answers = AnswersAt(port, candidate, "AT", kSearchTimeoutMs, reply);
    // Its echo comes at once, also from a device whose answer comes only at the next speed.
    echo = echo || reply.find("AT") != std::string::npos;
    if (answers) return {};
  }
  // Its results may be numbers only: this makes them words and leaves them so.
  return FindSpeed(port, report, speed);
}

// The lines of a reply, without the owner's names.
std::string Anonymous(const std::string& reply, Recording& recording) {
  std::vector<std::string> lines = Lines(reply);
  for (std::string& line : lines) MaskPrivateTexts(line, recording.replaced);
  return Joined(lines, "\n");
}

kxsim::Answer AsAnswer(const Exchange& exchange, Recording& recording) {
  kxsim::Answer answer;
  switch (exchange.result) {
    case kxwan::kResultOk:
      answer.text = Anonymous(exchange.text, recording);
      break;
    case kxwan::kResultError:
      answer.result = "ERROR";
      break;
    case kxwan::kResultEquipmentError:
      answer.result = "+CME ERROR: " + exchange.text;
      break;
    default:
      answer.result.clear();
      break;
  }
  return answer;
}

// A question without an answer is one thing, a device that is late or answers nothing any more
// another.
Result Record(Port& port, const std::string& command, Recording& recording) {
  Exchange exchange;
  const Reading reading = ReadInTime(port, [&] { exchange = Ask(port, command, kTimeoutMs); });
  if (reading.failure) return reading.failure;
  ++recording.asked;
  if (reading.ignored > 0) ++recording.silent;
  kxsim::AddReply(recording.profile, command, AsAnswer(exchange, recording));
  return {};
}

Result RecordReports(Port& port, Recording& recording) {
  const Exchange before = Ask(port, "AT+CMEE?", kTimeoutMs);
  for (const char* command : kReportQueries) {
    if (Result failure = Record(port, command, recording)) return failure;
  }
  const size_t digit = before.text.find_first_of("012");
  if (before.IsOk() && digit != std::string::npos) {
    Ask(port, std::string("AT+CMEE=") + before.text[digit], kTimeoutMs);
  }
  return {};
}

void ReplaceNumbers(Recording& recording) {
  for (const kxsim::Replacement& replacement : kxsim::Anonymise(recording.profile)) {
    if (replacement.places > 0) recording.replaced.insert(replacement.what);
  }
}

// What comes of raising the speed and of preparing a call. Where the recording is silent one short
// try is enough: it is never late.
void ObserveCall(Port& port, Observation& observation) {
  port.Modem()->m_nRetries = 1;
  port.Modem()->m_dwResponseTimeout = 1000;
  ObserveFastSpeed(port.Device(), observation);
  port.Simulated()->ClearCommands();
  const ModemInfo& info = observation.info;
  ObservePreparation(port.Device(),
                     PropertiesOf(observation.platform, info.szManufacturer, info.szModel),
                     observation);
  observation.seen.prepare = port.Simulated()->Commands();
}

}  // namespace

Result RecordDevice(Port& port, const Report& report, Recording& recording) {
  unsigned long speed = 0;
  bool echo = false;
  if (Result failure = FindSpeedAndEcho(port, report, speed, echo)) return failure;
  recording.profile.scripted = true;
  recording.profile.line.baud = static_cast<int>(speed);
  recording.profile.line.echo = echo;

  const Progress progress("asking the device", !report.IsJson());
  if (Result failure = CheckAnswers(port)) return failure;
  for (const char* command : kQueries) {
    if (Result failure = Record(port, command, recording)) return failure;
  }
  if (Result failure = RecordReports(port, recording)) return failure;
  if (echo) Ask(port, "ATE1", kTimeoutMs);
  ReplaceNumbers(recording);
  return {};
}

Result RecordExpectation(kxsim::Profile& profile) {
  Port port("the recording");
  if (Result failure = port.Open(profile)) return failure;
  const auto speed = static_cast<unsigned long>(profile.line.baud);
  CHandsetPlatform platform = PLATFORM_UNKNOWN;
  Observation observation{profile.expect};
  if (!DetectWirelessPhone(port.Modem(), speed, platform) ||
      !ObserveInformation(port.Device(), observation)) {
    return DeviceFailed("The recording does not answer like the device.");
  }
  TakeSpeed(kxwan::CorrectPlatform(port.Modem(), platform), speed, observation);
  ObserveBattery(port.Device(), observation);
  ObserveSim(port.Device(), observation);
  ObserveCall(port, observation);
  return {};
}

}  // namespace kxtool
