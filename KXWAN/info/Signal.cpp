#include <KXWAN/info/Signal.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/info/QueryPrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>

#include <algorithm>
#include <limits>
#include <string_view>

namespace {

constexpr int32_t kNotDetectable = 99;

int32_t LevelOf(int32_t strength) {
  if (strength == kNotDetectable) {
    return 0;
  }
  using Level = std::numeric_limits<int32_t>;
  return static_cast<int32_t>(std::clamp<double>(strength * 3.2, Level::min(), Level::max()));
}

}  // namespace

bool GetSignalLevelFromDevice(CSModem* modem, ModemInfo* info) {
  info->nSignalLevel = 0;
  const char* command = kxwan::ReportsOnExecution(*info) ? "AT+CSQ\r" : "AT+CSQ?\r";
  const kxwan::Answer answer = kxwan::Exchange(modem, command);
  if (!answer.IsOk()) {
    return false;
  }
  const std::string_view report = kxwan::TextBehind(answer.text, "CSQ:");
  info->nSignalLevel = LevelOf(kxwan::ToInt(report.substr(0, report.find_first_of("\r,"))));
  return true;
}
