#include <recording/Secrets.h>

#include <profile/Text.h>

#include <algorithm>
#include <iterator>
#include <string>

namespace kxsim {
namespace {

constexpr const char* kSerialNumber = "IMEI or ESN";
constexpr const char* kSubscriber = "IMSI";
constexpr const char* kCard = "ICCID";
constexpr const char* kPhone = "phone number";
constexpr const char* kCode = "PIN or PUK";

constexpr size_t kShortestNumber = 6;
constexpr size_t kShortestCode = 4;

// A name in front of a number, or a command that asks for one.
struct SecretName {
  std::string_view name;
  const char* what;
};

constexpr SecretName kLabels[] = {
    {"IMEI", kSerialNumber}, {"MEID", kSerialNumber},   {"ESN", kSerialNumber},
    {"S/N", kSerialNumber},  {"SERIAL", kSerialNumber}, {"IMSI", kSubscriber},
    {"CCID", kCard},         {"MSISDN", kPhone},        {"MDN", kPhone},
};

constexpr SecretName kQueries[] = {
    {"+CGSN", kSerialNumber}, {"+GSN", kSerialNumber}, {"^MEID", kSerialNumber},
    {"+CIMI", kSubscriber},   {"+CCID", kCard},        {"+ICCID", kCard},
    {"^ICCID", kCard},        {"!ICCID", kCard},       {"+QCCID", kCard},
    {"+CNUM", kPhone},        {"+CSCA", kPhone},       {"ATD", kPhone},
};

// A number of digits that no other number has.
struct SecretLength {
  size_t digits;
  std::string_view start;
  const char* what;
};

constexpr SecretLength kLengths[] = {
    {15, "", "IMEI or IMSI"}, {16, "", kSerialNumber}, {19, "89", kCard}, {20, "89", kCard}};

// A command with secret parameters, from the given one on.
struct SecretParameters {
  std::string_view command;
  size_t first;
};

constexpr SecretParameters kSecretParameters[] = {
    {"+CPIN=", 0}, {"+CPIN2=", 0}, {"+CLCK=", 2}, {"+CPWD=", 1}};

bool IsInNumber(char byte) { return IsDigit(byte) || byte == '-'; }

// The end of the run of such characters that begins at a place.
size_t RunEnd(std::string_view text, size_t start, bool (*belongs)(char)) {
  while (start < text.size() && belongs(text[start])) ++start;
  return start;
}

// A word that is not all hexadecimal digits has its numbers among its letters.
void AddNumbersOfWord(std::string_view text, size_t start, size_t end,
                      std::vector<SecretPlace>& places) {
  const std::string_view word = text.substr(start, end - start);
  if (word.starts_with("0x") || word.starts_with("0X")) start += 2;
  if (RunEnd(text, start, IsHexDigit) >= end) return places.push_back({start, end - start});
  for (size_t at = start; at < end;) {
    const size_t digits = std::min(RunEnd(text, at, IsDigit), end);
    if (digits > at) places.push_back({at, digits - at});
    at = std::max(digits, at + 1);
  }
}

size_t DigitsIn(std::string_view text) {
  return static_cast<size_t>(std::count_if(text.begin(), text.end(), IsDigit));
}

// "35-209900-176148-1" is one number, "2004-11-16" is none of ours.
bool IsHyphenated(std::string_view number) {
  return number.find('-') != number.npos && DigitsIn(number) >= kLengths[0].digits;
}

bool NamesNumber(std::string_view number) {
  return number.size() >= kShortestNumber &&
         (DigitsIn(number) > 0 || std::all_of(number.begin(), number.end(), IsHexDigit));
}

bool AsksFor(std::string_view command, std::string_view query) {
  if (query.starts_with("AT")) return command.starts_with(query);
  const size_t at = command.find(query);
  if (at == command.npos) return false;
  // A longer name is another command.
  const size_t end = at + query.size();
  return end == command.size() || !IsLetterOrDigit(command[end]);
}

void AddCodesOf(std::string_view text, size_t start, size_t first,
                std::vector<SecretPlace>& places) {
  for (size_t index = 0; start < text.size(); ++index) {
    const size_t end = std::min(text.find_first_of(",;\r\n", start), text.size());
    const size_t open = text.find_first_not_of(" \"", start);
    const size_t stop = open < end ? RunEnd(text, open, IsLetterOrDigit) : end;
    if (index >= first && open < end && stop - open >= kShortestCode) {
      places.push_back({open, stop - open, kCode});
    }
    if (end == text.size() || text[end] != ',') return;
    start = end + 1;
  }
}

void AddByLength(std::string_view text, const SecretPlace& place,
                 std::vector<SecretPlace>& places) {
  const std::string_view number = text.substr(place.start, place.length);
  if (RunEnd(number, 0, IsInNumber) != number.size()) return;
  for (const SecretLength& row : kLengths) {
    if (DigitsIn(number) != row.digits || !number.starts_with(row.start)) continue;
    return places.push_back({place.start, place.length, row.what});
  }
}

// A label is followed by its number, but for a "0x" in front.
void AddByLabel(std::string_view text, const SecretName& label,
                const std::vector<SecretPlace>& numbers, std::vector<SecretPlace>& places) {
  size_t at = FindIgnoringCase(text, label.name);
  for (; at != text.npos; at = FindIgnoringCase(text, label.name, at)) {
    at += label.name.size();
    const size_t start = std::min(text.find_first_not_of(" \t:=.#\"", at), text.size());
    const auto next = std::lower_bound(
        numbers.begin(), numbers.end(), start,
        [](const SecretPlace& number, size_t from) { return number.start < from; });
    if (next == numbers.end() || next->start > start + 2) continue;
    if (!NamesNumber(text.substr(next->start, next->length))) continue;
    places.push_back({next->start, next->length, label.what});
  }
}

}  // namespace

std::vector<SecretPlace> FindNumbers(std::string_view text) {
  std::vector<SecretPlace> places;
  for (size_t at = 0; at < text.size();) {
    size_t end = IsDigit(text[at]) ? RunEnd(text, at, IsInNumber) : at;
    if (IsHyphenated(text.substr(at, end - at)) &&
        (end == text.size() || !IsLetterOrDigit(text[end]))) {
      places.push_back({at, end - at});
    } else {
      end = RunEnd(text, at, IsLetterOrDigit);
      if (end > at) AddNumbersOfWord(text, at, end, places);
    }
    at = std::max(end, at + 1);
  }
  return places;
}

std::vector<SecretPlace> FindSecretNumbers(std::string_view text) {
  const std::vector<SecretPlace> numbers = FindNumbers(text);
  std::vector<SecretPlace> places;
  for (const SecretPlace& number : numbers) AddByLength(text, number, places);
  for (const SecretName& label : kLabels) AddByLabel(text, label, numbers, places);
  return places;
}

std::vector<SecretPlace> FindAskedNumbers(std::string_view command, std::string_view text) {
  const std::string line = Normalised(command);
  const auto* query = std::find_if(std::begin(kQueries), std::end(kQueries),
                                   [&](const SecretName& row) { return AsksFor(line, row.name); });
  std::vector<SecretPlace> places;
  // A dial command itself holds the number.
  const bool dials = query != std::end(kQueries) && query->name.starts_with("AT");
  if (query == std::end(kQueries) || (dials && text != command)) return places;
  for (SecretPlace place : FindNumbers(text)) {
    if (!NamesNumber(text.substr(place.start, place.length))) continue;
    place.what = query->what;
    places.push_back(place);
  }
  return places;
}

std::vector<SecretPlace> FindCodes(std::string_view text) {
  std::vector<SecretPlace> places;
  for (const SecretParameters& row : kSecretParameters) {
    size_t at = FindIgnoringCase(text, row.command);
    for (; at != text.npos; at = FindIgnoringCase(text, row.command, at)) {
      at += row.command.size();
      AddCodesOf(text, at, row.first, places);
    }
  }
  return places;
}

}  // namespace kxsim
