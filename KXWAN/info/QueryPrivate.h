#pragma once

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/info/Battery.h>
#include <KXWAN/info/ModemInfo.h>
#include <KXWAN/modem/CSModem.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// What the readers share, and how they understand an answer.
namespace kxwan {

// As QueryModem, and as QueryValue, which gives an empty text for false here.
bool Query(CSModem* modem, const char* command, const char* prefix, std::string& answer);
std::string QueryValue(CSModem* modem, const char* command, const char* tag);

// As StripQuotesfromResponse.
std::string WithoutQuotes(std::string_view text, bool removeAll);

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

// The level that an answer to +CBC reports, never negative. With a maxStrength above 0 the device
// counts from 0 to maxStrength, and the level is rescaled to percent.
int32_t BatteryLevelOf(std::string_view answer, int32_t maxStrength);

// What the value of a +CBC line tells.
BatteryReading BatteryReadingOf(std::string_view value);

}  // namespace kxwan
