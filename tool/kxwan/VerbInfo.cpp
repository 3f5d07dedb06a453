#include <tool/kxwan/Device.h>
#include <tool/kxwan/Progress.h>
#include <tool/kxwan/Reading.h>
#include <tool/kxwan/Verb.h>

#include <string_view>

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
Value Told(int32_t value) { return value < 0 ? Value(nullptr) : Value(value); }

// What the readers of a record write where they were told nothing. A device that refuses to tell is
// shown as they put it, but silence is no value.
Value TextTold(std::string_view text, bool silent) {
  const bool nothing = text == "Error" || text == "Unknown";
  return silent && nothing ? Value(nullptr) : Value(text);
}

struct Registration {
  bool told = false;
  kxwan::RegistrationState state = kxwan::RegistrationState::kUnknown;
};

struct Information {
  ModemInfo record = {};
  bool recordIgnored = false;  // commands that it takes, by the device
  kxwan::BatteryReading battery = {-1, -1, -1};
  Registration circuit;
  Registration packet;
  uint32_t ignored = 0;
};

Result ReadRecord(Port& port, Information& information) {
  bool answered = false;
  const Reading reading =
      ReadInTime(port, [&] { answered = port.Device().GetModemData(&information.record); });
  if (reading.failure) return reading.failure;
  information.recordIgnored = reading.ignored > 0;
  information.ignored += reading.ignored;
  return answered ? Result() : NoAnswer(port, kxwan::kResultTimeout);
}

Registration ReadDomain(Port& port, kxwan::RegistrationDomain domain) {
  Registration read;
  read.told = kxwan::ReadRegistration(port.Modem(), domain, read.state);
  return read;
}

Result ReadOthers(Port& port, Information& information) {
  const Reading reading = ReadInTime(port, [&] {
    kxwan::ReadBattery(port.Modem(), information.battery);
    information.circuit = ReadDomain(port, kxwan::RegistrationDomain::kCircuit);
    information.packet = ReadDomain(port, kxwan::RegistrationDomain::kPacket);
  });
  information.ignored += reading.ignored;
  return reading.failure;
}

void ShowRecord(const Information& information, Report& report) {
  const ModemInfo& info = information.record;
  const bool silent = information.recordIgnored;
  for (const InfoText& row : kTexts) {
    report.Fact(row.key, row.label, TextTold(row.value(info), silent));
  }
  const bool noSignal = silent && info.nSignalLevel == 0;
  report.Fact("signal", "Signal", Told(noSignal ? -1 : info.nSignalLevel), "%");
  report.Fact("flags", "Device flags", PlatformNames(info.dwDeviceFlags));
  report.Fact("non_cdma", "Not CDMA", info.bNonCDMA != 0);
  report.Fact("gtran", "GTRAN", info.bIsGTRAN != 0);
  report.Fact("sim_missing", "SIM missing", info.bSIMNotInserted != 0);
}

void ShowBattery(const kxwan::BatteryReading& reading, Report& report) {
  constexpr const char* kSupplies[] = {"on battery", "on external power", "no battery", "fault"};
  report.Fact("battery", "Battery", Told(reading.percent), "%");
  if (reading.millivolts >= 0) report.Fact("millivolts", "Voltage", reading.millivolts, "mV");
  if (reading.status >= 0 && reading.status <= 3) {
    report.Fact("supply", "Supply", kSupplies[reading.status]);
  }
}

void ShowRegistration(const char* key, const char* label, const Registration& registration,
                      Report& report) {
  if (registration.told) report.Fact(key, label, kxwan::RegistrationText(registration.state));
}

Result Run(const Options& options, Report& report) {
  Port port(options.port);
  if (Result failure = port.Open()) return failure;
  unsigned long speed = 0;
  if (Result failure = FindSpeed(port, report, speed)) return failure;
  Information information;
  {
    const Progress progress("reading", !report.IsJson());
    if (Result failure = ReadRecord(port, information)) return failure;
    if (Result failure = ReadOthers(port, information)) return failure;
  }
  ShowRecord(information, report);
  ShowBattery(information.battery, report);
  ShowRegistration("network", "Network", information.circuit, report);
  ShowRegistration("packet_network", "Packet network", information.packet, report);
  ShowIgnored(information.ignored, report);
  return {};
}

}  // namespace

const Verb kInfoVerb = {"info", "Read everything that a device tells about itself",
                        "kxwan info /dev/ttyUSB0 --json", kPortAlone, Run};

}  // namespace kxtool
