#include <KXWAN/info/Registration.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/info/QueryPrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace kxwan {
namespace {

struct Domain {
  const char* command;
  std::string_view tag;
};

// Position is the RegistrationDomain.
constexpr Domain kDomains[] = {
    {.command = "AT+CREG?\r", .tag = "+CREG:"},
    {.command = "AT+CGREG?\r", .tag = "+CGREG:"},
};

// Position is the RegistrationState.
constexpr const char* kTexts[] = {
    "not registered",
    "registered, home network",
    "not registered, searching",
    "registration denied",
    "unknown",
    "registered, roaming",
    "registered for messages only, home network",
    "registered for messages only, roaming",
    "emergency calls only",
};

bool IsStateNumber(std::string_view field) { return field.size() <= 2 && IsNumber(field); }

bool IsKnown(int32_t value) {
  return value >= 0 && value < static_cast<int32_t>(std::size(kTexts));
}

RegistrationState StateOf(std::string_view number) {
  const int32_t value = ToInt(number);
  return IsKnown(value) ? static_cast<RegistrationState>(value) : RegistrationState::kUnknown;
}

enum class LineKind { kOther, kUnasked, kAnswer };

// "0,1" and "2,1,"00C3","A1B2"" are answers: report mode, then state. "1" and "1,"00C3","A1B2"" are
// what devices send unasked: no mode, and an area code in the state's place.
LineKind ParseValue(std::string_view value, RegistrationState& state) {
  const size_t comma = std::min(value.find(','), value.size());
  const std::string_view first = Trimmed(value.substr(0, comma));
  const std::string_view rest = value.substr(std::min(comma + 1, value.size()));
  const std::string_view second = Trimmed(rest.substr(0, rest.find(',')));
  if (!IsStateNumber(first)) return LineKind::kOther;
  state = StateOf(IsStateNumber(second) ? second : first);
  return IsStateNumber(second) ? LineKind::kAnswer : LineKind::kUnasked;
}

}  // namespace

bool ReadRegistration(CSModem* modem, RegistrationDomain domain, RegistrationState& state) {
  const Domain& asked = kDomains[static_cast<int>(domain)];
  const Answer answer = ExchangeWhileThere(modem, asked.command);
  if (!answer.IsOk()) return false;
  LineKind best = LineKind::kOther;
  for (std::string_view rest = answer.text; !rest.empty();) {
    const std::string_view line = TakeLine(rest);
    if (line.substr(0, asked.tag.size()) != asked.tag) continue;
    RegistrationState told = RegistrationState::kUnknown;
    const LineKind kind = ParseValue(line.substr(asked.tag.size()), told);
    if (kind != LineKind::kOther && kind >= best) {
      best = kind;
      state = told;
    }
  }
  return best != LineKind::kOther;
}

const char* RegistrationText(RegistrationState state) {
  const int value = static_cast<int>(state);
  return kTexts[IsKnown(value) ? value : static_cast<int>(RegistrationState::kUnknown)];
}

}  // namespace kxwan
