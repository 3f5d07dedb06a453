#include <KXWAN/info/Query.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/handset/CHandsetPlatform.h>
#include <KXWAN/info/QueryPrivate.h>
#include <KXWAN/modem/ResultCode.h>

#include <algorithm>
#include <cstring>
#include <string_view>

namespace {

// Gives out characters that no other text shares.
void Assign(CString& out, std::string_view text) {
  out.Empty();
  out.AssignCopy(static_cast<int>(text.size()), text.data());
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
    if (asked && unnamed.empty()) {
      unnamed = line;
    }
  }
  return unnamed;
}

}  // namespace

namespace kxwan {

int Exchange(CSModem* modem, const char* command, ScopedText& response) {
  int result = kResultTimeout;
  DiscardText(response);
  return modem->SendCommandGetResponse(command, result, response) ? result : kResultTimeout;
}

bool Ask(CSModem* modem, const char* command, const char* prefix, ScopedText& answer) {
  DiscardText(answer);
  return QueryModem(modem, command, prefix, answer);
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

bool QueryValue(CSModem* modem, const char* command, const char* tag, CString& value) {
  ScopedText response;
  if (Exchange(modem, command, response) != kResultOk) {
    return false;
  }
  const std::string_view found =
      ValueOf(View(response), Trimmed(command), tag != nullptr ? tag : "");
  if (found.empty()) {
    return false;
  }
  Assign(value, found);
  return true;
}

}  // namespace kxwan

void PrepareResponse(CString& text) {
  // Deliberate: characters count as signed, so bytes from 0x80 on are below the blank and go too.
  // What remains is 7-bit text that any program can show.
  char* const begin = text.GetBuffer(0);
  std::replace_if(
      begin, begin + text.GetLength(), [](char ch) { return static_cast<signed char>(ch) < 32; },
      ' ');
  text.TrimLeft();
  text.TrimRight();
}

void StripQuotesfromResponse(CString& text, signed char removeAll) {
  if (text.Find('"') != 0 || text.ReverseFind('"') != text.GetLength() - 1) {
    return;
  }
  if (removeAll != 0) {
    text.Remove('"');
    return;
  }
  text.DeleteRight(1);
  text.Delete(0, 1);
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
  kxwan::ScopedText response;
  if (kxwan::Exchange(modem, command, response) != kxwan::kResultOk) {
    Assign(out, "Error");
    return false;
  }
  if (response.IsEmpty()) {
    Assign(out, "Unknown");
    return false;
  }
  if (prefix == nullptr) {
    Assign(out, kxwan::View(response));
    return true;
  }
  Assign(out, kxwan::TextBehind(kxwan::View(response), prefix));
  PrepareResponse(out);
  return true;
}
