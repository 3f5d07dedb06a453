#include <tool/kxwan/Device.h>
#include <tool/kxwan/Progress.h>
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
  report.Fact("before", "Speed before", identity.speed, "bit/s");
  unsigned long speed = identity.speed;
  {
    const Progress progress("trying faster speeds", !report.IsJson());
    port.Device().DetectModemBaudRate(identity.platform, speed);
  }
  if (Result failure = CheckAnswers(port)) return failure;
  report.Fact("after", "Speed now", speed, "bit/s");
  return {};
}

}  // namespace

const Verb kSpeedVerb = {"speed", "Move a device to the fastest line speed that suits it",
                         "kxwan speed /dev/ttyUSB0", kPortAlone, Run};

}  // namespace kxtool
