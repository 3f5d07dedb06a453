#include <tool/kxwan/Device.h>
#include <tool/kxwan/Progress.h>
#include <tool/kxwan/Reading.h>
#include <tool/kxwan/Text.h>
#include <tool/kxwan/Verb.h>

namespace kxtool {
namespace {

constexpr CHandsetPlatform kNeedsApn = PLATFORM_GPRS | PLATFORM_EDGE | PLATFORM_UMTS;

std::string CheckApn(const std::string& apn) {
  return kxwan::IsApn(apn.c_str())
             ? ""
             : "is no access point name: 1 to 100 printable characters without a double quote";
}

CHandsetPlatform PlatformOf(const std::string& names) {
  CHandsetPlatform platform = PLATFORM_UNKNOWN;
  for (const std::string& name : SplitList(names)) {
    platform |= MapDeviceTypeToDeviceFlag(name.c_str());
  }
  return platform;
}

std::string CheckTypes(const std::string& names) {
  for (const std::string& name : SplitList(names)) {
    if (MapDeviceTypeToDeviceFlag(name.c_str()) == PLATFORM_UNKNOWN) {
      return "\"" + Printable(name) +
             "\" is none of GSM, GPRS, EDGE, CDMA, 1xRTT, 1xEVDO, 1xEVDO (Rev-A), 1xQNC, CSD, "
             "UMTS, TDMA and IDEN";
    }
  }
  return "";
}

constexpr Option kOptions[] = {
    kPort,
    {.name = "--apn",
     .place = &Options::apn,
     .help = "access point name of the network; GPRS, EDGE and UMTS devices need one",
     .check = CheckApn},
    {.name = "--type",
     .place = &Options::types,
     .help = "what the device is, such as \"GPRS, EDGE\"; else it is found out",
     .check = CheckTypes},
};

Result Prepare(Port& port, Identity& identity, const Options& options, Report& report) {
  KXModemProperties properties = identity.Properties();
  const Progress progress("readying the device, which may have to attach", !report.IsJson());
  bool prepared = false;
  unsigned long code = kxwan::kNoConnectError;
  const Reading reading = ReadInTime(port, [&] {
    prepared = port.Device().PrepareDeviceForConnection(&properties, options.apn.c_str());
    code = GetLastModemError();
  });
  if (reading.failure) return reading.failure;
  identity.ignored += reading.ignored;
  if (prepared) return {};
  report.Data("code", code);
  return DeviceFailed("The device is not ready for a data call (code " + std::to_string(code) +
                      "). " + kxwan::DescribeConnectError(code));
}

Result Run(const Options& options, Report& report) {
  Port port(options.port);
  if (Result failure = port.Open()) return failure;
  Identity identity;
  if (Result failure = Identify(port, report, identity)) return failure;
  if (!options.types.empty()) identity.platform = PlatformOf(options.types);
  if (Result failure = CheckIdentified(port, identity)) return failure;
  report.Fact("platform", "Platform", PlatformNames(identity.platform));
  if ((identity.platform & kNeedsApn) != 0 && options.apn.empty()) {
    return WrongCall("This device needs the network's access point name: add --apn APN.");
  }
  if (Result failure = Prepare(port, identity, options, report)) return failure;

  const bool isSlow = CSWirelessModem::DoesGPRSDeviceRequire57600(identity.manufacturer.c_str(),
                                                                  identity.model.c_str());
  report.Fact("dial", "Dial", NumberToDial(identity));
  report.Fact("dial_speed", "At", isSlow ? 57600UL : identity.speed, "bit/s");
  ShowIgnored(identity.ignored, report);
  return {};
}

}  // namespace

const Verb kPrepareVerb = {"prepare", "Ready a device for a data call and tell what to dial",
                           "kxwan prepare /dev/ttyUSB0 --apn internet", kOptions, Run};

}  // namespace kxtool
