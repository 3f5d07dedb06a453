#include <tool/kxwan/Device.h>
#include <tool/kxwan/Reading.h>
#include <tool/kxwan/Text.h>
#include <tool/kxwan/Verb.h>

#include <algorithm>

namespace kxtool {
namespace {

std::string CheckCommand(const std::string& command) {
  const bool isText = std::all_of(command.begin(), command.end(), IsPrintable);
  return isText && !command.empty() ? "" : "is no command: printable ASCII without a line end";
}

constexpr Option kOptions[] = {
    kPort,
    {.name = "COMMAND",
     .place = &Options::commands,
     .help = "an AT command, such as AT+CSQ",
     .required = true,
     .check = CheckCommand},
    {.name = "--timeout",
     .place = &Options::timeoutSeconds,
     .help = "seconds to wait for each answer",
     .most = 3600},
    {.name = "--speed",
     .place = &Options::speed,
     .help = "bit/s at which the device answers; else it is found",
     .aboveZero = true},
};

Result SetSpeed(Port& port, const Options& options, const Report& report, unsigned long& speed) {
  speed = options.speed;
  if (speed == 0) return FindSpeed(port, report, speed);
  if (port.Modem()->m_pSerial->SetDataFormat(speed, -1, -1, -1) != 0) return {};
  return WrongCall("This system has no line speed of " + std::to_string(speed) + " bit/s.");
}

void ShowExchange(const std::string& command, const Exchange& exchange, Report& report) {
  const std::string result = ResultName(exchange);
  const std::vector<std::string> lines =
      exchange.result == kxwan::kResultEquipmentError ? Lines("") : Lines(exchange.text);
  std::string text = "> " + command + "\n";
  for (const std::string& line : lines) text += Printable(line) + "\n";
  report.Item("exchanges", {{"command", command}, {"reply", lines}, {"result", result}},
              text + Printable(result));
}

Result Run(const Options& options, Report& report) {
  Port port(options.port);
  if (Result failure = port.Open()) return failure;
  unsigned long speed = 0;
  if (Result failure = SetSpeed(port, options, report, speed)) return failure;
  report.Data("speed", speed);

  std::vector<std::string> refused;
  bool allSent = true;
  for (const std::string& command : options.commands) {
    const auto timeoutMs = static_cast<unsigned long>(options.timeoutSeconds) * 1000;
    const Exchange exchange = Ask(port, command, timeoutMs);
    ShowExchange(command, exchange, report);
    if (exchange.result == kxwan::kResultDeviceGone) return NoAnswer(port, exchange.result);
    if (exchange.result == kxwan::kResultInDoubt) allSent = false;
    if (!exchange.IsOk()) refused.push_back(command);
  }
  if (refused.empty()) return {};
  std::string sentence = "The device did not answer OK to " + Joined(refused, ", ") + ".";
  if (!allSent) {
    sentence +=
        " A command is not sent while answers to earlier ones may still come: wait longer for each "
        "with --timeout.";
  }
  return DeviceFailed(sentence);
}

}  // namespace

const Verb kAtVerb = {"at", "Send AT commands, each once, and show the answers",
                      "kxwan at /dev/ttyUSB0 AT+CSQ AT+COPS?", kOptions, Run};

}  // namespace kxtool
