#include <tool/kxwan/PortCheck.h>
#include <tool/kxwan/Text.h>
#include <tool/kxwan/Verb.h>

namespace kxtool {
namespace {

void ShowPort(const ListedPort& port, Report& report) {
  const PortCheck check = CheckPort(port.path);
  const std::string state = PortStateName(check.state);
  const bool isFree = check.state == PortState::kFree;
  const std::string hint = isFree ? "" : PortFailure(port.path, check).sentence;
  Element row = {{"name", port.name}, {"path", port.path}, {"state", state}};
  if (!isFree) row.emplace_back("hint", hint);
  const std::string line = Printable(port.name) + "  " + Printable(port.path) + "  " + state;
  report.Item("ports", row, isFree ? line : line + ": " + hint);
}

Result Run(const Options&, Report& report) {
  report.Data("ports", std::vector<std::string>());
  const std::vector<ListedPort> ports = ListPorts();
  for (const ListedPort& port : ports) ShowPort(port, report);
  if (ports.empty()) {
    report.Line(
        "This machine has no serial port. To try things out there are simulated devices: "
        "kxwan detect sim:NAME.");
  }
  return {};
}

}  // namespace

const Verb kPortsVerb = {
    "ports", "List the serial ports and whether they can be opened", "kxwan ports", {}, Run};

}  // namespace kxtool
