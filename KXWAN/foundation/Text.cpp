#include <KXWAN/foundation/TextPrivate.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <limits>

namespace kxwan {

namespace {

const char* OrEmpty(const char* text) { return text != nullptr ? text : ""; }

}  // namespace

void MakeEmpty(CString& text) {
  text.Empty();
  if (!text.IsEmpty()) text.AssignCopy(0, "");
}

bool Equals(const char* text, const char* other) {
  return std::strcmp(OrEmpty(text), OrEmpty(other)) == 0;
}

bool Contains(const char* text, const char* part) {
  return std::strstr(OrEmpty(text), OrEmpty(part)) != nullptr;
}

bool IsNumber(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

size_t FindNoCase(std::string_view text, std::string_view part) {
  const auto same = [](char a, char b) { return AsciiLower(a) == AsciiLower(b); };
  const auto at = std::search(text.begin(), text.end(), part.begin(), part.end(), same);
  const bool found = at != text.end() || part.empty();
  return found ? static_cast<size_t>(at - text.begin()) : std::string_view::npos;
}

std::string_view TextBehind(std::string_view text, std::string_view tag) {
  const size_t at = text.find(tag);
  return at == std::string_view::npos ? text : text.substr(at + tag.size());
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
  return text;
}

int32_t ToInt(std::string_view text) {
  text = Trimmed(text);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  if (text.starts_with('-')) return 0;
  using Limits = std::numeric_limits<int32_t>;
  int64_t number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec == std::errc::result_out_of_range) return negative ? Limits::min() : Limits::max();
  const int64_t value = negative ? -number : number;
  return static_cast<int32_t>(std::clamp<int64_t>(value, Limits::min(), Limits::max()));
}

void CopyText(char* buffer, size_t size, std::string_view text) {
  if (size == 0) return;
  const size_t length = std::min({size - 1, text.size(), text.find('\0')});
  std::memmove(buffer, text.data(), length);
  buffer[length] = '\0';
}

std::string Formatted(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::string text;
  FormatInto(text, format, arguments);
  va_end(arguments);
  return text;
}

void FormatInto(std::string& text, const char* format, va_list arguments) {
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  text.resize(static_cast<size_t>(std::max(length, 0)));
  std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
}

}  // namespace kxwan
