#pragma once

#include <KXWAN/foundation/CString.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kxwan {

// A text that lives in one function and that nobody shares. Ordinary CString buffers are never
// freed; this one's is. Take a fresh one for every exchange: what it held before it was emptied,
// assigned or outgrown is not freed. A plain CString that takes it over would share characters that
// go with it: hand them on with CString(text.String()).
class ScopedText : public CString {
 public:
  ScopedText() = default;
  explicit ScopedText(const char* text) : CString(text) {}
  ScopedText(const ScopedText&) = delete;
  ScopedText& operator=(const ScopedText&) = delete;
  using CString::operator=;
  ScopedText& operator=(const CString& source) {
    AssignCopy(source.GetLength(), source.String());
    return *this;
  }
  ~ScopedText() { LockBuffer(); }
};

// Empties a text, also a locked one, which Empty leaves as it is. A locked buffer stays.
void MakeEmpty(CString& text);

// Frees the characters of a text that nobody shares, and leaves it empty.
void DiscardText(CString& text);

inline std::string_view View(const CString& text) {
  return {text.String(), static_cast<size_t>(text.GetLength())};
}

// Letters and white space as ASCII has them, whatever the program's locale says.
constexpr char AsciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
constexpr char AsciiUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }
constexpr bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Case-sensitive tests of C texts. A null text counts as "".
bool Equals(const char* text, const char* other);
bool Contains(const char* text, const char* part);
inline bool Equals(const CString& text, const char* other) { return Equals(text.String(), other); }
inline bool Contains(const CString& text, const char* part) {
  return Contains(text.String(), part);
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

}  // namespace kxwan
