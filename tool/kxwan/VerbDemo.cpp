#include <KXWAN/KXWAN.h>
#include <tool/kxwan/DemoSteps.h>
#include <tool/kxwan/PortCheck.h>
#include <tool/kxwan/Progress.h>
#include <tool/kxwan/Text.h>
#include <tool/kxwan/Verb.h>

#include <chrono>
#include <cstdio>
#include <iterator>

namespace kxtool {
namespace {

constexpr const char* kDevices[] = {"gprs-phone-with-pin", "cdma-card", "edge-card-57600"};

std::string StepLine(const Step& step, const StepOutcome& outcome, double milliseconds) {
  char start[64];
  std::snprintf(start, sizeof start, "  %-16s%9.1f ms  ", step.name, milliseconds);
  std::string line = start + Printable(outcome.found);
  if (!outcome.fault.empty()) line += ", FAILED: " + Printable(outcome.fault);
  return line;
}

// False when the step did not do what it should.
bool RunStep(const Step& step, Demonstration& demonstration, Report& report) {
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  StepOutcome outcome;
  {
    const Progress progress(step.waiting, !report.IsJson());
    outcome = step.run(demonstration);
  }
  const std::chrono::duration<double, std::milli> passed = Clock::now() - start;
  const bool isGood = outcome.fault.empty();
  Element element = {{"device", demonstration.profile.name},
                     {"step", step.name},
                     {"ok", isGood},
                     {"found", outcome.found},
                     {"milliseconds", passed.count()}};
  if (!isGood) element.emplace_back("fault", outcome.fault);
  report.Item("steps", element, StepLine(step, outcome, passed.count()));
  return isGood;
}

Result Demonstrate(const std::string& name, Report& report) {
  Demonstration demonstration{.port = Port("sim:" + name)};
  const kxsim::Result failure = kxsim::LoadProfile(name, demonstration.profile);
  if (failure) return WrongCall(failure->sentence);
  report.Line(name + ": " + demonstration.profile.description);
  for (const Step& step : kSteps) {
    if (step.applies(demonstration) && !RunStep(step, demonstration, report)) {
      return DeviceFailed("The demonstration failed at \"" + std::string(step.name) + "\" of " +
                          name + ".");
    }
  }
  return {};
}

void ShowPorts(Report& report) {
  const std::vector<ListedPort> ports = ListPorts();
  std::vector<std::string> paths;
  paths.reserve(ports.size());
  for (const ListedPort& port : ports) paths.push_back(port.path);
  report.Data("ports", paths);
  report.Line("Serial ports of this machine: " +
              (paths.empty() ? std::string("none") : Printable(Joined(paths, ", "))));
}

Result Run(const Options&, Report& report) {
  ShowPorts(report);
  Result result;
  for (const char* name : kDevices) {
    if (Result failure = Demonstrate(name, report); failure && !result) result = failure;
  }
  if (logFileFD != nullptr) {
    report.Fact("log", "Debug log", "/tmp/zrklog.txt");
  } else {
    report.Line("The debug log /tmp/zrklog.txt could not be written.");
  }
  return result;
}

}  // namespace

const Verb kDemoVerb = {
    "demo", "Show the whole road with simulated devices", "kxwan demo", {}, Run};

}  // namespace kxtool
