#pragma once

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/info/ModemInfo.h>
#include <KXWAN/modem/CSModem.h>

#include <cstddef>
#include <string_view>

// What the readers share. The texts given here are the readers' own: what they held before is
// freed, so one text may serve several queries.
namespace kxwan {

// Sends the command and gives its result code, kResultTimeout when there was none.
int Exchange(CSModem* modem, const char* command, ScopedText& response);

// As QueryModem.
bool Ask(CSModem* modem, const char* command, const char* prefix, ScopedText& answer);

// Fills a field of the record: at most 62 characters and a NUL.
template <size_t size>
void SetField(char (&field)[size], std::string_view text) {
  CopyText(field, size - 1, text);
}

// Whether the device reports on an execution command (3GPP, "AT+CSQ\r") and not on a read command
// (IS-707, "AT+CSQ?\r").
bool ReportsOnExecution(const ModemInfo& info);

// Takes the first line off a text and gives it trimmed.
std::string_view TakeLine(std::string_view& text);

}  // namespace kxwan
