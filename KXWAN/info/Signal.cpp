#include <KXWAN/info/Signal.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/info/QueryPrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>

namespace {

constexpr int32_t kNotDetectable = 99;

int32_t LevelOf(int32_t strength) {
  if (strength == kNotDetectable) return 0;
  using Level = std::numeric_limits<int32_t>;
  return static_cast<int32_t>(std::clamp<double>(strength * 3.2, Level::min(), Level::max()));
}

// Position is the value that +CAD reports.
constexpr const char* kServices[] = {
    "No Service",
    "CDMA Digital Service",
    "TDMA Digital Service",
    "Analog Service",
};

const char* ServiceOf(int32_t value) {
  const bool known = value >= 0 && value < static_cast<int32_t>(std::size(kServices));
  return known ? kServices[value] : "Unknown Service";
}

}  // namespace

bool GetSignalLevelFromDevice(CSModem* modem, ModemInfo* info) {
  info->nSignalLevel = 0;
  const char* command = kxwan::ReportsOnExecution(*info) ? "AT+CSQ\r" : "AT+CSQ?\r";
  const kxwan::Answer answer = kxwan::Exchange(modem, command);
  if (!answer.IsOk()) return false;
  const std::string_view report = kxwan::TextBehind(answer.text, "CSQ:");
  info->nSignalLevel = LevelOf(kxwan::ToInt(report.substr(0, report.find_first_of("\r,"))));
  return true;
}

void GetModemCoverage(CSModem* modem, ModemInfo* info) {
  std::string answer;
  if (info->bNonCDMA == 0 && kxwan::Query(modem, "AT+CAD?\r", "+CAD:", answer)) {
    kxwan::SetField(info->szCoverage, ServiceOf(kxwan::ToInt(answer)));
    return;
  }
  kxwan::SetField(info->szCoverage, info->nSignalLevel < 1 ? "Unknown" : "Digital");
}
