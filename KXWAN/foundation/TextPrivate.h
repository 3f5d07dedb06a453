#pragma once

#include <KXWAN/foundation/CString.h>

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kxwan {

// A text that lives in one function and that nobody shares. Ordinary CString buffers are never
// freed; this one's is. Take a fresh one each time: what it held before it was emptied, assigned or
// outgrown is not freed.
class ScopedText : public CString {
 public:
  ScopedText() = default;
  explicit ScopedText(const char* text) : CString(text) {}
  ScopedText(const ScopedText&) = delete;
  ScopedText& operator=(const ScopedText&) = delete;
  ~ScopedText() { LockBuffer(); }
};

// Empties a text, also a locked one, which Empty leaves as it is. A locked buffer stays.
void MakeEmpty(CString& text);

inline std::string_view View(const CString& text) {
  return {text.String(), static_cast<size_t>(text.GetLength())};
}

// Letters, digits and white space as ASCII has them, whatever the program's locale says.
constexpr char AsciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
constexpr char AsciiUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }
constexpr bool IsUpper(char c) { return c >= 'A' && c <= 'Z'; }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsPrintable(char c) { return c >= ' ' && c <= '~'; }
constexpr bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Case-sensitive tests of C texts. A null text counts as "".
bool Equals(const char* text, const char* other);
bool Contains(const char* text, const char* part);

inline bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

// Whether a text is made of digits, at least one.
bool IsNumber(std::string_view text);

// Where part occurs in text, the case of ASCII letters ignored; npos when it does not.
size_t FindNoCase(std::string_view text, std::string_view part);

inline bool ContainsNoCase(std::string_view text, std::string_view part) {
  return FindNoCase(text, part) != std::string_view::npos;
}

// The text behind the first occurrence of tag; the whole text when it does not occur.
std::string_view TextBehind(std::string_view text, std::string_view tag);

// Leading and trailing white space cut off.
std::string_view Trimmed(std::string_view text);

// The decimal number at the start of the text, white space and a sign allowed in front, as atoi
// reads it; 0 when there is none, clamped to the range of int32_t.
int32_t ToInt(std::string_view text);

// Copies at most size - 1 characters and a NUL. Stops at a NUL in the text. size 0: nothing.
void CopyText(char* buffer, size_t size, std::string_view text);

// printf into a text. FormatInto replaces what the text holds.
std::string Formatted(const char* format, ...) KXWAN_PRINTF(1, 2);
void FormatInto(std::string& text, const char* format, va_list arguments) KXWAN_PRINTF(2, 0);

}  // namespace kxwan
