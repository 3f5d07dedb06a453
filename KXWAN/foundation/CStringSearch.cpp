#include <KXWAN/foundation/CString.h>

#include <KXWAN/foundation/TextPrivate.h>

#include <algorithm>
#include <cstring>
#include <string_view>

namespace {

constexpr int kNotFound = -1;

int Position(const char* text, const char* match) {
  return match == nullptr ? kNotFound : static_cast<int>(match - text);
}

CString Slice(const CString& text, int first, int count) {
  CString slice;
  text.AllocCopy(slice, count, first, 0);
  return slice;
}

}  // namespace

int CString::Find(char ch) const { return Find(ch, 0); }

// Deliberate: a start at the length finds no character, not even the NUL, while the text form below
// does search the empty tail.
int CString::Find(char ch, int start) const {
  if (start >= GetLength()) return kNotFound;
  return Position(m_pchData, std::strchr(m_pchData + std::max(start, 0), ch));
}

int CString::Find(const char* sub) const { return Find(sub, 0); }

int CString::Find(const char* sub, int start) const {
  if (sub == nullptr || start > GetLength()) return kNotFound;
  return Position(m_pchData, std::strstr(m_pchData + std::max(start, 0), sub));
}

// strcasestr would fold by the program's locale.
int CString::FindNoCase(const char* sub, int start) const {
  if (sub == nullptr || start > GetLength()) return kNotFound;
  const char* from = m_pchData + std::max(start, 0);
  const size_t at = kxwan::FindNoCase(from, sub);
  return at == std::string_view::npos ? kNotFound : Position(m_pchData, from + at);
}

int CString::ReverseFind(char ch) const { return Position(m_pchData, std::strrchr(m_pchData, ch)); }

int CString::FindOneOf(const char* set) const {
  return set == nullptr ? kNotFound : Position(m_pchData, std::strpbrk(m_pchData, set));
}

CString CString::Left(int count) const {
  return count < GetLength() ? Slice(*this, 0, count) : *this;
}

CString CString::Right(int count) const {
  const int wanted = std::max(count, 0);
  return wanted < GetLength() ? Slice(*this, GetLength() - wanted, wanted) : *this;
}

CString CString::Mid(int first, int count) const {
  if (first <= 0 && count >= GetLength()) return *this;
  return Slice(*this, first, count);
}

CString CString::Mid(int first) const { return Mid(first, GetLength() - std::max(first, 0)); }

CString CString::SpanIncluding(const char* set) const {
  return Left(set == nullptr ? 0 : static_cast<int>(std::strspn(m_pchData, set)));
}

CString CString::SpanExcluding(const char* set) const {
  if (set == nullptr) return *this;
  return Left(static_cast<int>(std::strcspn(m_pchData, set)));
}
