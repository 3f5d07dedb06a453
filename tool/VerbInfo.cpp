#include <tool/Device.h>
#include <tool/Progress.h>
#include <tool/Verb.h>

namespace kxtool {
namespace {

struct InfoText {
  const char* key;
  const char* label;
  const char* (*value)(const ModemInfo& info);
};

constexpr InfoText kTexts[] = {
    {"manufacturer", "Manufacturer", [](const ModemInfo& info) { return &info.szManufacturer[0]; }},
    {"model", "Model", [](const ModemInfo& info) { return &info.szModel[0]; }},
    {"version", "Version", [](const ModemInfo& info) { return &info.szVersion[0]; }},
    {"capabilities", "Capabilities", [](const ModemInfo& info) { return &info.szCapabilities[0]; }},
    {"coverage", "Coverage", [](const ModemInfo& info) { return &info.szCoverage[0]; }},
};

// Nothing where the device does not say.
Json Told(int32_t value) { return value < 0 ? Json(nullptr) : Json(value); }

void ShowRecord(const ModemInfo& info, Report& report) {
  for (const InfoText& row : kTexts) report.Fact(row.key, row.label, row.value(info));
  report.Fact("signal", "Signal", info.nSignalLevel, "%");
  report.Fact("flags", "Device flags", PlatformNames(info.dwDeviceFlags));
  report.Fact("non_cdma", "Not CDMA", info.bNonCDMA != 0);
  report.Fact("gtran", "GTRAN", info.bIsGTRAN != 0);
  report.Fact("sim_missing", "SIM missing", info.bSIMNotInserted != 0);
}

void ShowBattery(Port& port, Report& report) {
  constexpr const char* kSupplies[] = {"on battery", "on external power", "no battery", "fault"};
  kxwan::BatteryReading reading = {-1, -1, -1};
  kxwan::ReadBattery(port.Modem(), reading);
  report.Fact("battery", "Battery", Told(reading.percent), "%");
  if (reading.millivolts >= 0) report.Fact("millivolts", "Voltage", reading.millivolts, "mV");
  if (reading.status >= 0 && reading.status <= 3) {
    report.Fact("supply", "Supply", kSupplies[reading.status]);
  }
}

void ShowRegistration(Port& port, Report& report) {
  struct Domain {
    kxwan::RegistrationDomain domain;
    const char* key;
    const char* label;
  };
  constexpr Domain kDomains[] = {
      {kxwan::RegistrationDomain::kCircuit, "network", "Network"},
      {kxwan::RegistrationDomain::kPacket, "packet_network", "Packet network"},
  };
  for (const Domain& row : kDomains) {
    kxwan::RegistrationState state = kxwan::RegistrationState::kUnknown;
    if (kxwan::ReadRegistration(port.Modem(), row.domain, state)) {
      report.Fact(row.key, row.label, kxwan::RegistrationText(state));
    }
  }
}

Result Run(const Options& options, Report& report) {
  Port port(options.port);
  if (Result failure = port.Open()) return failure;
  unsigned long speed = 0;
  if (Result failure = FindSpeed(port, report, speed)) return failure;
  ModemInfo info = {};
  {
    const Progress progress("reading", !report.IsJson());
    if (!port.Device().GetModemData(&info)) return StoppedAnswering(port);
  }
  ShowRecord(info, report);
  ShowBattery(port, report);
  ShowRegistration(port, report);
  // A device that left in the middle shows by this alone: all that is not told looks the same.
  return Answers(port) ? Result() : StoppedAnswering(port);
}

}  // namespace

const Verb kInfoVerb = {"info", "Read everything that a device tells about itself",
                        "kxwan info /dev/ttyUSB0 --json", AddPort, Run};

}  // namespace kxtool
