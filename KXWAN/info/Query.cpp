#include <KXWAN/info/Query.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/handset/CHandsetPlatform.h>
#include <KXWAN/info/QueryPrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

namespace {

// Gives out characters that no other text shares.
void Assign(CString& out, std::string_view text) {
  out.Empty();
  out.AssignCopy(static_cast<int>(text.size()), text.data());
}

// Changes the text in place, so that its copies change too. It never gets longer.
void Overwrite(CString& text, std::string_view changed) {
  if (changed != kxwan::View(text)) {
    text.AssignCopy(static_cast<int>(changed.size()), changed.data());
  }
}

// Words that a device may say at any time and that carry no name (V.250 5.7.1).
constexpr std::string_view kCallProgress[] = {
    "RING", "CONNECT", "NO CARRIER", "NO DIALTONE", "NO DIAL TONE", "BUSY", "NO ANSWER",
};

bool IsCallProgress(std::string_view line) {
  return std::any_of(std::begin(kCallProgress), std::end(kCallProgress),
                     [line](std::string_view word) { return line == word; });
}

// "+CREG: 1", "^RSSI:15": the line says what it is about.
bool CarriesName(std::string_view line) {
  return std::string_view("+^$%*#!&_").find(line.front()) != std::string_view::npos &&
         line.find(':') != std::string_view::npos;
}

// Empty when there is no such line.
std::string_view ValueOf(std::string_view response, std::string_view echo, std::string_view tag) {
  std::string_view unnamed;
  while (!response.empty()) {
    const std::string_view line = kxwan::TakeLine(response);
    if (!tag.empty() && line.substr(0, tag.size()) == tag) {
      return kxwan::Trimmed(line.substr(tag.size()));
    }
    const bool asked = !line.empty() && line != echo && !CarriesName(line) && !IsCallProgress(line);
    if (asked && unnamed.empty()) unnamed = line;
  }
  return unnamed;
}

// Deliberate: characters count as signed, so bytes from 0x80 on are below the blank and go too.
// What remains is 7-bit text that any program can show.
std::string Prepared(std::string_view text) {
  std::string prepared(text);
  std::replace_if(
      prepared.begin(), prepared.end(), [](char ch) { return static_cast<signed char>(ch) < 32; },
      ' ');
  return std::string(kxwan::Trimmed(prepared));
}

}  // namespace

namespace kxwan {

bool Query(CSModem* modem, const char* command, const char* prefix, std::string& answer) {
  const Answer reply = Exchange(modem, command);
  if (!reply.IsOk() || reply.text.empty()) {
    answer = reply.IsOk() ? "Unknown" : "Error";
    return false;
  }
  answer = prefix != nullptr ? Prepared(TextBehind(reply.text, prefix)) : reply.text;
  return true;
}

bool ReportsOnExecution(const ModemInfo& info) {
  return (info.dwDeviceFlags & (PLATFORM_GSM | PLATFORM_GPRS | PLATFORM_EDGE | PLATFORM_UMTS)) != 0;
}

std::string_view TakeLine(std::string_view& text) {
  const size_t end = std::min(text.find_first_of("\r\n"), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return Trimmed(line);
}

std::string QueryValue(CSModem* modem, const char* command, const char* tag) {
  const Answer reply = ExchangeWhileThere(modem, command);
  if (!reply.IsOk()) return {};
  return std::string(ValueOf(reply.text, Trimmed(command), tag != nullptr ? tag : ""));
}

bool QueryValue(CSModem* modem, const char* command, const char* tag, CString& value) {
  const std::string found = QueryValue(modem, command, tag);
  if (found.empty()) return false;
  Assign(value, found);
  return true;
}

std::string WithoutQuotes(std::string_view text, bool removeAll) {
  std::string rest(text);
  if (!text.starts_with('"') || !text.ends_with('"')) return rest;
  if (removeAll) {
    std::erase(rest, '"');
  } else {
    rest.pop_back();
    rest.erase(0, 1);
  }
  return rest;
}

}  // namespace kxwan

void PrepareResponse(CString& text) { Overwrite(text, Prepared(kxwan::View(text))); }

void StripQuotesfromResponse(CString& text, signed char removeAll) {
  Overwrite(text, kxwan::WithoutQuotes(kxwan::View(text), removeAll != 0));
}

void formatModelKey(char* key) {
  // Deliberate: quotes are all that goes. Case and blanks stay, as the key is compared with names
  // that devices report.
  char* const end = key + std::strlen(key);
  char* const newEnd = std::remove(key, end, '"');
  if (newEnd != end) {
    *newEnd = '\0';
  }
}

bool QueryModem(CSModem* modem, const char* command, const char* prefix, CString& out) {
  std::string answer;
  const bool told = kxwan::Query(modem, command, prefix, answer);
  Assign(out, answer);
  return told;
}
