#include <tool/kxwan/Device.h>
#include <tool/kxwan/Reading.h>
#include <tool/kxwan/Verb.h>

namespace kxtool {
namespace {

Result Run(const Options& options, Report& report) {
  Port port(options.port);
  if (Result failure = port.Open()) return failure;
  Identity identity;
  if (Result failure = Identify(port, report, identity)) return failure;
  if (Result failure = CheckIdentified(port, identity)) return failure;
  report.Fact("platform", "Platform", PlatformNames(identity.platform));
  report.Fact("manufacturer", "Manufacturer", identity.manufacturer);
  report.Fact("model", "Model", identity.model);
  report.Fact("speed", "Speed", identity.speed, "bit/s");
  ShowIgnored(identity.ignored, report);
  return {};
}

}  // namespace

const Verb kDetectVerb = {"detect", "Find a device's speed and tell what it is",
                          "kxwan detect /dev/ttyUSB0", kPortAlone, Run};

}  // namespace kxtool
