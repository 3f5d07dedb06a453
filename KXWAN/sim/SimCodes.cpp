#include <KXWAN/sim/SimCodes.h>

#include <KXWAN/foundation/TablePrivate.h>

#include <iterator>
#include <string_view>

namespace kxwan {
namespace {

constexpr CodeText<long> kCodeTexts[] = {
    {kSimReady, "The SIM needs no password."},
    {kSimNotExchanged, "The device did not answer, or gave an unexpected answer."},
    {kSimPukRequired, "The SIM is blocked: it needs the PUK and a new PIN."},
    {kSimWrongPassword, "The password was wrong; another try counts."},
    {kSimPukRejected, "The PUK was rejected; another try counts."},
    {kSimPinNotSaved, "The PIN was accepted, but the SIM will go on asking for it."},
    {kSimOtherError, "The device reported an error."},
    {kSimMissing, "The SIM is not inserted, or it failed."},
    {kSimPinRequired, "The SIM needs its PIN."},
    {kSimNoAnswer, "The device did not answer when it was asked for the state of its SIM."},
};

}  // namespace

const char* DescribeSimCode(long code) {
  return TextOf(kCodeTexts, code, "This code is not one of the SIM operations'.");
}

}  // namespace kxwan

namespace {

struct NumericRow {
  const char* text;  // the whole report
  long code;
};

// Deliberate: PIN2 and PUK2 count as a PIN and a PUK here and as ready in words. The commands that
// a number answers do need the second password; a state in words is about using the card.
constexpr NumericRow kNumericRows[] = {
    {"10", kxwan::kSimMissing},        // SIM not inserted
    {"11", kxwan::kSimPinRequired},    // SIM PIN required
    {"12", kxwan::kSimPukRequired},    // SIM PUK required
    {"13", kxwan::kSimMissing},        // SIM failure
    {"14", kxwan::kSimOtherError},     // SIM busy
    {"15", kxwan::kSimOtherError},     // SIM wrong
    {"16", kxwan::kSimWrongPassword},  // incorrect password
    {"17", kxwan::kSimPinRequired},    // SIM PIN2 required
    {"18", kxwan::kSimPukRequired},    // SIM PUK2 required
};

struct VerboseRow {
  const char* phrase;  // occurs in the report; "" fits any
  bool ignoreCase;
  long code;
};

// The first row that fits wins, so "SIM PIN2" stands above "SIM PIN".
constexpr VerboseRow kVerboseRows[] = {
    {"SIM Failure", true, kxwan::kSimMissing},  {"SIM not inserted", true, kxwan::kSimMissing},
    {"READY", false, kxwan::kSimReady},         {"SIM PIN2", false, kxwan::kSimReady},
    {"SIM PUK2", false, kxwan::kSimReady},      {"SIM PIN", false, kxwan::kSimPinRequired},
    {"SIM PUK", false, kxwan::kSimPukRequired}, {"", false, kxwan::kSimOtherError},
};
static_assert(*std::rbegin(kVerboseRows)->phrase == '\0', "the last row must fit any report");

}  // namespace

long DecodeCMError(const CString& errorText) {
  const std::string_view text = errorText.String();
  const NumericRow* number =
      kxwan::FindRow(kNumericRows, [text](const NumericRow& row) { return text == row.text; });
  if (number != nullptr) return number->code;
  const auto fits = [text](const VerboseRow& row) {
    return row.ignoreCase ? kxwan::ContainsNoCase(text, row.phrase)
                          : kxwan::Contains(text, row.phrase);
  };
  return kxwan::FirstRow(kVerboseRows, fits).code;
}
