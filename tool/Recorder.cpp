#include <tool/Recorder.h>

#include <charconv>

#include <tool/Device.h>
#include <tool/Progress.h>
#include <tool/Redaction.h>
#include <tool/Text.h>

namespace kxtool {
namespace {

constexpr unsigned long kTimeoutMs = 5000;
constexpr unsigned long kSearchTimeoutMs = 500;

// Asked first: what they tell is looked for in all other answers.
constexpr const char* kSecretQueries[] = {"AT+CGSN", "AT+GSN", "AT+CIMI", "AT+CNUM", "AT+CCID"};

// The test and read forms of everything that the library sends. None of them changes a setting.
constexpr const char* kQueries[] = {
    "AT+GMI",      "AT+CGMI",      "AT+GMM",      "AT+CGMM",      "AT+GMR",     "AT+CGMR",
    "AT+FMFR?",    "AT+FMDL?",     "ATI",         "ATI0",         "ATI1",       "ATI2",
    "ATI3",        "ATI4",         "ATI5",        "ATI6",         "ATI7",       "ATI8",
    "ATI9",        "AT+GCAP",      "AT+GCAP?",    "AT+IPR?",      "AT+IPR=?",   "AT+CFUN?",
    "AT+CFUN=?",   "AT+CSQ",       "AT+CSQ?",     "AT+CSQ=?",     "AT+CBC",     "AT+CBC?",
    "AT+CBC=?",    "AT+CAD?",      "AT+CREG?",    "AT+CGREG?",    "AT+CGATT?",  "AT+CGATT=?",
    "AT+CGDCONT?", "AT+CGDCONT=?", "AT+CGQMIN?",  "AT+CGQMIN=?",  "AT+CGQREQ?", "AT+CGQREQ=?",
    "AT+CGEQMIN?", "AT+CGEQMIN=?", "AT+CGEQREQ?", "AT+CGEQREQ=?", "AT+CPWD=?",  "AT+CLCK=?",
    "AT+CRM?",     "AT+CRM=?",     "AT+CSO?",     "AT+CSO=?",     "AT$QCMDR?",  "AT$QCMDR=?",
    "AT$QCQNC?",   "AT$QCMIP?",    "AT$QCMIP=?",  "AT$QCSCRM?",   "AT+NWHFUN?", "AT+NWHFUN=?",
};

// Asked with numeric error reports, as the library asks them. The last report mode asked for is
// put back afterwards.
constexpr const char* kReportQueries[] = {"AT+CMEE=1;+CPIN?", "AT+CMEE=1", "AT+CPIN?", "AT+CMEE=0"};

// Whether a device answers at the speed, without a change to its settings.
bool AnswersAt(Port& port, unsigned long speed, bool& echo) {
  if (port.Modem()->m_pSerial->SetDataFormat(speed, -1, -1, -1) == 0) return false;
  const Exchange exchange = Ask(port, "AT", kSearchTimeoutMs);
  echo = exchange.text.find("AT") != std::string::npos;
  return exchange.result != kxwan::kResultTimeout;
}

Result FindSpeedAndEcho(Port& port, const Report& report, unsigned long& speed, bool& echo) {
  constexpr unsigned long kSpeeds[] = {115200, 9600, 57600, 19200, 230400, 38400, 460800};
  const Progress progress("searching the speed at which the device answers", !report.IsJson());
  for (const unsigned long candidate : kSpeeds) {
    speed = candidate;
    if (AnswersAt(port, candidate, echo)) return {};
  }
  // Its results may be numbers only: this makes them words and leaves them so.
  return FindSpeed(port, report, speed);
}

kxsim::Answer AsAnswer(const Exchange& exchange, Redaction& redaction) {
  kxsim::Answer answer;
  const std::string text = redaction.Apply(exchange.text);
  switch (exchange.result) {
    case kxwan::kResultOk:
      answer.text = Joined(Lines(text), "\n");
      break;
    case kxwan::kResultError:
      answer.result = "ERROR";
      break;
    case kxwan::kResultEquipmentError:
      answer.result = "+CME ERROR: " + text;
      break;
    default:
      answer.result.clear();
      break;
  }
  return answer;
}

void Record(Port& port, const std::string& command, Redaction& redaction, Recording& recording) {
  const Exchange exchange = Ask(port, command, kTimeoutMs);
  ++recording.asked;
  if (exchange.result == kxwan::kResultTimeout) ++recording.silent;
  kxsim::AddReply(recording.profile, command, AsAnswer(exchange, redaction));
}

void RecordReports(Port& port, Redaction& redaction, Recording& recording) {
  const Exchange before = Ask(port, "AT+CMEE?", kTimeoutMs);
  for (const char* command : kReportQueries) Record(port, command, redaction, recording);
  const size_t digit = before.text.find_first_of("012");
  if (before.IsOk() && digit != std::string::npos) {
    Ask(port, std::string("AT+CMEE=") + before.text[digit], kTimeoutMs);
  }
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
  Ask(port, "ATE0V1", kTimeoutMs);
  Redaction redaction;
  for (const char* command : kSecretQueries) redaction.Learn(Ask(port, command, kTimeoutMs).text);
  for (const char* command : kSecretQueries) Record(port, command, redaction, recording);
  for (const char* command : kQueries) Record(port, command, redaction, recording);
  RecordReports(port, redaction, recording);
  if (echo) Ask(port, "ATE1", kTimeoutMs);
  recording.replaced = redaction.Replaced();
  return {};
}

Result RecordExpectation(kxsim::Profile& profile) {
  Port port("the recording");
  if (Result failure = port.Open(profile)) return failure;
  Identity identity;
  identity.speed = static_cast<unsigned long>(profile.line.baud);
  ModemInfo info = {};
  if (!DetectWirelessPhone(port.Modem(), identity.speed, identity.platform) ||
      !port.Device().GetModemData(&info)) {
    return DeviceFailed("The recording does not answer like the device.");
  }
  identity.platform = kxwan::CorrectPlatform(port.Modem(), identity.platform);
  ReadNames(port, identity);
  const bool hasBattery = port.Device().GetBatteryLevelFromDevice(&info);
  long pinLength = 0;
  char dial[16] = "";
  kxwan::DialNumber(identity.manufacturer.c_str(), identity.model.c_str(), dial, sizeof dial);

  kxsim::Expectation& expect = profile.expect;
  expect.platform = PlatformNames(identity.platform);
  expect.baud = profile.line.baud;
  expect.manufacturer = info.szManufacturer;
  expect.model = info.szModel;
  expect.capabilities = info.szCapabilities;
  expect.coverage = info.szCoverage;
  expect.version = info.szVersion;
  expect.signal = info.nSignalLevel;
  if (hasBattery) expect.battery = static_cast<int>(info.dwBatteryLevel);
  expect.sim = port.Device().IsPasswordRequired(&pinLength);
  expect.pinLength = static_cast<int>(pinLength);
  expect.dial = dial;
  return {};
}

}  // namespace kxtool
