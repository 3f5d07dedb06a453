#include <KXWAN/api/ProtocolNames.h>

#include <KXWAN/foundation/TablePrivate.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>

namespace {

struct ProtocolName {
  const char* text;
  CHandsetPlatform bit;         // rendered when set; 0: never
  CHandsetPlatform flag = bit;  // what the text stands for
  CHandsetPlatform unless = 0;  // not rendered when this is set too
};

constexpr ProtocolName kProtocolNames[] = {
    {"GSM", PLATFORM_GSM},
    {"GPRS", PLATFORM_GPRS},
    {"EDGE", PLATFORM_EDGE},
    {"CDMA", PLATFORM_CDMA},
    {"1xRTT", PLATFORM_1XRTT},
    {.text = "1xEVDO (Rev-A)",
     .bit = PLATFORM_1XEVDO_REVA,
     .flag = PLATFORM_1XEVDO_REVA | PLATFORM_1XEVDO},
    {.text = "1xEVDO", .bit = PLATFORM_1XEVDO, .unless = PLATFORM_1XEVDO_REVA},
    {"CSD", PLATFORM_CSD},
    {"UMTS", PLATFORM_UMTS},
    {"TDMA", PLATFORM_TDMA},
    {"IDEN", PLATFORM_IDEN},
    {"1xQNC", PLATFORM_1XQNC},
    // Deliberate: a second spelling, which stands in applications' device settings.
    {.text = "QNC", .bit = 0, .flag = PLATFORM_1XQNC},
};

constexpr std::string_view kSeparator = ", ";
constexpr size_t kBufferSize = 128;

constexpr size_t LongestText() {
  size_t length = 0;
  for (const ProtocolName& row : kProtocolNames) {
    length += std::string_view(row.text).size() + kSeparator.size();
  }
  return length;
}
static_assert(LongestText() < kBufferSize, "all names together must fit");

}  // namespace

const char* GetModemProtocolTypeAsString(unsigned long platform) {
  thread_local char buffer[kBufferSize];
  char* end = buffer;
  const auto append = [&](std::string_view text) {
    end = std::copy(text.begin(), text.end(), end);
  };
  for (const ProtocolName& row : kProtocolNames) {
    if ((platform & row.bit) == 0 || (platform & row.unless) != 0) continue;
    if (end != buffer) append(kSeparator);
    append(row.text);
  }
  if (end == buffer) append("UNKNOWN");
  *end = '\0';
  return buffer;
}

CHandsetPlatform MapDeviceTypeToDeviceFlag(const char* name) {
  const ProtocolName* row = kxwan::FindRow(
      kProtocolNames, [name](const ProtocolName& each) { return kxwan::Equals(name, each.text); });
  return row != nullptr ? row->flag : PLATFORM_UNKNOWN;
}
