#include <recording/LogReader.h>

#include <recording/LogDialogue.h>

#include <algorithm>
#include <iterator>

namespace kxsim {
namespace {

using Devices = std::map<std::string, LoggedDevice>;

// Of as many exchanges the later name wins, so that a port that is named goes before one that is
// not.
Devices::const_iterator Choose(const Devices& devices, const std::string& port) {
  if (!port.empty()) return devices.find(port);
  auto best = devices.begin();
  for (auto at = devices.begin(); at != devices.end(); ++at) {
    if (at->second.Exchanges() >= best->second.Exchanges()) best = at;
  }
  return best;
}

std::string Named(const std::string& port) {
  return port == LogDialogue::kUnnamedPort ? "a port that is not named" : port;
}

// A sentence for each stretch of lines about a device, handed on one by one.
template <typename Tell>
void Describe(const Devices::value_type& device, const std::string& what, Tell tell) {
  for (const auto& [first, last] : device.second.Stretches()) {
    tell(LogNote{first, "from here to line " + std::to_string(last) + " " + what + ": " +
                            Named(device.first)});
  }
}

}  // namespace

Result ReadLog(std::istream& log, const std::string& port, LogReading& reading) {
  LogRecords records(log);
  LogDialogue dialogue;
  LogRecord record;
  while (records.Next(record)) dialogue.Take(record);
  dialogue.Finish();

  reading = {};
  const Devices& devices = dialogue.Devices();
  const auto chosen = Choose(devices, port);
  for (auto at = devices.begin(); at != devices.end(); ++at) {
    if (at == chosen) continue;
    Describe(*at, "not played", [&](LogNote note) { dialogue.Notes().Add(std::move(note)); });
  }
  reading.notes = dialogue.Notes().Take();
  if (chosen != devices.end()) {
    Describe(*chosen, "played", [&](LogNote note) { reading.notes.push_back(std::move(note)); });
  }
  std::stable_sort(reading.notes.begin(), reading.notes.end(),
                   [](const LogNote& one, const LogNote& other) { return one.line < other.line; });
  if (chosen == devices.end()) {
    const std::string whose = port.empty() ? "" : " with " + port;
    return Failure{"there is no dialogue" + whose + " that could be played", kFailed};
  }
  reading.profile = chosen->second.Build();
  reading.exchanges = chosen->second.Exchanges();
  return {};
}

}  // namespace kxsim
