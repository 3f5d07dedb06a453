#include <KXWAN/info/Coverage.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/info/QueryPrivate.h>

#include <iterator>
#include <string>

namespace {

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

void GetModemCoverage(CSModem* modem, ModemInfo* info) {
  std::string answer;
  if (info->bNonCDMA == 0 && kxwan::Query(modem, "AT+CAD?\r", "+CAD:", answer)) {
    kxwan::SetField(info->szCoverage, ServiceOf(kxwan::ToInt(answer)));
    return;
  }
  kxwan::SetField(info->szCoverage, info->nSignalLevel < 1 ? "Unknown" : "Digital");
}
