#include <tool/kxwan/PortCheck.h>
#include <tool/kxwan/Text.h>
#include <tool/kxwan/Verb.h>

namespace kxtool {
namespace {

void ShowPort(const ListedPort& port, Report& report) {
  const PortCheck check = CheckPort(port.path);
  const std::string state = PortStateName(check.state);
  const bool isFree = check.state == PortState::kFree;
  Json row = {{"name", port.name}, {"path", port.path}, {"state", state}};
  if (!isFree) row["hint"] = PortFailure(port.path, check).sentence;
  std::string line = Printable(port.name) + "  " + Printable(port.path) + "  " + state;
  if (!isFree) line += ": " + row["hint"].get<std::string>();
  report.Item("ports", row, line);
}

Result Run(const Options&, Report& report) {
  report.Data("ports", Json::array());
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

const Verb kPortsVerb = {"ports", "List the serial ports and whether they can be opened",
                         "kxwan ports", nullptr, Run};

}  // namespace kxtool
