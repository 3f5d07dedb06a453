#include <tool/kxwan/Device.h>

#include <tool/kxwan/Observe.h>
#include <tool/kxwan/Progress.h>
#include <tool/kxwan/Reading.h>
#include <tool/kxwan/Text.h>

#include <algorithm>
#include <iterator>

namespace kxtool {
namespace {

Failure SilentDevice(const Port& port) {
  return DeviceFailed("No device answered on " + Printable(port.Name()) +
                      " at 9600 to 921600 bit/s. Is it switched on, and is this its port? "
                      "\"kxwan ports\" lists all.");
}

// For a device that takes its time: the usual speeds again, with more time than an ordinary command
// gets.
bool FindSpeedPatiently(Port& port, unsigned long& speed) {
  constexpr unsigned long kSpeeds[] = {19200, 57600, 115200, 230400, 9600};
  constexpr unsigned long kTimeoutMs = 3500;
  std::string reply;
  return std::any_of(std::begin(kSpeeds), std::end(kSpeeds), [&](unsigned long candidate) {
    speed = candidate;
    return AnswersAt(port, candidate, "ATE0V1", kTimeoutMs, reply);
  });
}

}  // namespace

KXModemProperties Identity::Properties() const {
  KXModemProperties properties = PropertiesOf(platform, manufacturer, model);
  properties.dwBaudRate = static_cast<uint32_t>(speed);
  return properties;
}

Result FindSpeed(Port& port, const Report& report, unsigned long& speed) {
  const Progress progress("searching the speed at which the device answers", !report.IsJson());
  if (kxwan::FindLineSpeed(port.Modem(), speed)) return {};
  return FindSpeedPatiently(port, speed) ? Result() : SilentDevice(port);
}

Result Identify(Port& port, const Report& report, Identity& identity) {
  if (Result failure = FindSpeed(port, report, identity.speed)) return failure;
  const Progress progress("asking who it is", !report.IsJson());
  constexpr unsigned long kTimeoutMs = 5000;
  bool answered = false;
  const Reading reading = ReadInTime(port, [&] {
    answered = DetectWirelessPhone(port.Modem(), identity.speed, identity.platform);
    if (!answered) return;
    // A device whose radio has just been switched on did not take it before.
    Ask(port, "ATE0V1", kTimeoutMs);
    identity.platform = kxwan::CorrectPlatform(port.Modem(), identity.platform);
    ReadNames(port, identity);
  });
  if (reading.failure) return reading.failure;
  identity.ignored = reading.ignored;
  return answered ? Result() : SilentDevice(port);
}

Result CheckIdentified(const Port& port, const Identity& identity) {
  if (identity.platform != PLATFORM_UNKNOWN || identity.ignored == 0) return {};
  return DeviceFailed("The device on " + Printable(port.Name()) + " left " +
                      std::to_string(identity.ignored) +
                      " questions without an answer, so that it is not known what it is. Switch "
                      "it off and on, and try again.");
}

void ReadNames(Port& port, Identity& identity) {
  char model[sizeof KXModemProperties::szModel] = "";
  char manufacturer[sizeof KXModemProperties::szManufacturer] = "";
  port.Device().GetModelAndManufacturer(model, sizeof model, manufacturer, sizeof manufacturer);
  identity.model = model;
  identity.manufacturer = manufacturer;
}

bool DialsAsCdma(CHandsetPlatform platform) {
  constexpr CHandsetPlatform kCdma = PLATFORM_CDMA | PLATFORM_1XRTT | PLATFORM_1XEVDO |
                                     PLATFORM_1XEVDO_REVA | PLATFORM_1XQNC | PLATFORM_1X_SPRINT;
  return (platform & kCdma) != 0;
}

std::string NumberToDial(const Identity& identity) {
  if (DialsAsCdma(identity.platform)) return "#777";
  char number[16] = "";
  kxwan::DialNumber(identity.manufacturer.c_str(), identity.model.c_str(), number, sizeof number);
  return number;
}

std::string PlatformNames(CHandsetPlatform platform) {
  return GetModemProtocolTypeAsString(platform);
}

Exchange Ask(Port& port, const std::string& command, unsigned long timeoutMs) {
  Exchange exchange;
  CString response;
  kxwan::SendOnce(port.Modem(), (command + "\r").c_str(), timeoutMs, exchange.result, response);
  exchange.text = response.String();
  response.LockBuffer();  // else the buffer of an ordinary text is never freed
  return exchange;
}

bool AnswersAt(Port& port, unsigned long speed, const std::string& command, unsigned long timeoutMs,
               std::string& reply) {
  CSModem& modem = *port.Modem();
  if (modem.m_pSerial->SetDataFormat(speed, -1, -1, -1) == 0) return false;
  if (!modem.SendCommand((command + "\r").c_str())) return false;
  int result = 0;
  CString response;
  const bool answered = modem.GetResponse(result, response, timeoutMs);
  reply = response.String();
  response.LockBuffer();
  return answered;
}

std::string ResultName(const Exchange& exchange) {
  switch (exchange.result) {
    case kxwan::kResultOk:
      return "OK";
    case kxwan::kResultError:
      return "ERROR";
    case kxwan::kResultEquipmentError:
      return "error " + exchange.text;
    case kxwan::kResultInDoubt:
      return "not sent";
    case kxwan::kResultDeviceGone:
      return "device gone";
    case kxwan::kResultNotSent:
      return "line blocked";
    default:
      return "no answer";
  }
}

}  // namespace kxtool
