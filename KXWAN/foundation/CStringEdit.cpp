#include <KXWAN/foundation/CString.h>

#include <KXWAN/foundation/CStringPrivate.h>
#include <KXWAN/foundation/TextPrivate.h>

#include <algorithm>
#include <cstring>
#include <string_view>

using kxwan::SetLength;
using kxwan::StoreText;
using kxwan::TextLength;
using kxwan::View;

namespace {

auto IsIn(std::string_view set) {
  return [set](char c) { return set.find(c) != std::string_view::npos; };
}

void RemoveRange(CStringData* data, int first, int count) {
  char* hole = data->Text() + first;
  const int tail = data->dataLength - first - count;
  if (count > 0) std::memmove(hole, hole + count, static_cast<size_t>(tail));
  SetLength(data, data->dataLength - count);
}

template <typename Predicate>
void CutFront(CString& text, Predicate cut) {
  text.CopyBeforeWrite();
  char* begin = text.GetData()->Text();
  char* kept = std::find_if_not(begin, begin + text.GetLength(), cut);
  RemoveRange(text.GetData(), 0, static_cast<int>(kept - begin));
}

template <typename Predicate>
void CutBack(CString& text, Predicate cut) {
  text.CopyBeforeWrite();
  int length = text.GetLength();
  while (length > 0 && cut(text.GetData()->Text()[length - 1])) --length;
  SetLength(text.GetData(), length);
}

// Makes room for so many characters at a position and gives that place, or null when memory is
// exhausted or the length could no longer be counted.
char* OpenGap(CString& text, int position, int count) {
  const int length = text.GetLength();
  if (count > kxwan::kMaxTextLength - length) return nullptr;
  char* buffer = text.GetBuffer(length + count);
  if (buffer == nullptr) return nullptr;
  char* gap = buffer + position;
  std::memmove(gap + count, gap, static_cast<size_t>(length - position));
  SetLength(text.GetData(), length + count);
  return gap;
}

int CountMatches(std::string_view text, std::string_view part) {
  int count = 0;
  size_t at = text.find(part);
  for (; at != std::string_view::npos; at = text.find(part, at + part.size())) ++count;
  return count;
}

// Writes the text with each match replaced. The output may lie in front of the text in the same
// buffer, as far in front as all replacements together lengthen the text: then it never catches up.
void WriteReplaced(char* output, std::string_view text, std::string_view oldText,
                   std::string_view newText) {
  for (size_t at = text.find(oldText); at != std::string_view::npos; at = text.find(oldText)) {
    std::memmove(output, text.data(), at);
    std::memcpy(output + at, newText.data(), newText.size());
    output += at + newText.size();
    text.remove_prefix(at + oldText.size());
  }
  std::memmove(output, text.data(), text.size());
}

CString Joined(const char* left, int leftLength, const char* right, int rightLength) {
  CString joined;
  joined.ConcatCopy(leftLength, left, rightLength, right);
  return joined;
}

}  // namespace

void CString::TrimLeft() { CutFront(*this, kxwan::IsSpace); }
void CString::TrimRight() { CutBack(*this, kxwan::IsSpace); }
void CString::TrimLeft(char ch) { CutFront(*this, IsIn({&ch, 1})); }
void CString::TrimRight(char ch) { CutBack(*this, IsIn({&ch, 1})); }

void CString::TrimLeft(const char* set) {
  if (set != nullptr && *set != '\0') CutFront(*this, IsIn(set));
}

void CString::TrimRight(const char* set) {
  if (set != nullptr) CutBack(*this, IsIn(set));
}

int CString::Remove(char ch) {
  CopyBeforeWrite();
  char* end = m_pchData + GetLength();
  const int removed = static_cast<int>(end - std::remove(m_pchData, end, ch));
  SetLength(GetData(), GetLength() - removed);
  return removed;
}

int CString::Replace(char oldChar, char newChar) {
  if (oldChar == newChar) return 0;
  CopyBeforeWrite();
  char* end = m_pchData + GetLength();
  const auto count = std::count(m_pchData, end, oldChar);
  std::replace(m_pchData, end, oldChar, newChar);
  return static_cast<int>(count);
}

int CString::Replace(const char* oldText, const char* newText) {
  if (oldText == nullptr || *oldText == '\0') return 0;
  if (newText == nullptr) newText = "";
  if (kxwan::LiesIn(GetData(), oldText) || kxwan::LiesIn(GetData(), newText)) {
    const kxwan::ScopedText oldCopy(oldText);
    const kxwan::ScopedText newCopy(newText);
    return Replace(oldCopy.String(), newCopy.String());
  }
  const std::string_view oldView(oldText);
  const std::string_view newView(newText);
  const int count = CountMatches(View(*this), oldView);
  if (count == 0) return 0;
  const int length = GetLength();
  const int64_t change =
      static_cast<int64_t>(newView.size()) - static_cast<int64_t>(oldView.size());
  const int64_t newLength = length + change * count;
  if (newLength > kxwan::kMaxTextLength) return 0;
  char* buffer = GetBuffer(static_cast<int>(newLength));
  if (buffer == nullptr) return 0;
  char* source = buffer + std::max<int64_t>(newLength - length, 0);
  std::memmove(source, buffer, static_cast<size_t>(length));
  WriteReplaced(buffer, {source, static_cast<size_t>(length)}, oldView, newView);
  SetLength(GetData(), static_cast<int>(newLength));
  return count;
}

int CString::Insert(int index, const char* text) {
  const int count = TextLength(text);
  if (count == 0) return GetLength();
  if (kxwan::LiesIn(GetData(), text)) {
    const kxwan::ScopedText copy(text);
    return Insert(index, copy.String());
  }
  char* gap = OpenGap(*this, std::clamp(index, 0, GetLength()), count);
  if (gap != nullptr) std::memcpy(gap, text, static_cast<size_t>(count));
  return GetLength();
}

int CString::Insert(int index, char ch) {
  char* gap = OpenGap(*this, std::clamp(index, 0, GetLength()), 1);
  if (gap != nullptr) *gap = ch;
  return GetLength();
}

int CString::Delete(int index, int count) {
  const int length = GetLength();
  const int first = std::max(index, 0);
  if (count >= 1 && first < length) {
    CopyBeforeWrite();
    RemoveRange(GetData(), first, std::min(count, length - first));
  }
  // Deliberate: callers get the length before the deletion.
  return length;
}

int CString::DeleteRight(int count) {
  SetLength(GetData(), GetLength() - std::clamp(count, 0, GetLength()));
  return GetLength();
}

void CString::SetAt(int index, char ch) {
  CopyBeforeWrite();
  if (index >= 0 && index < GetData()->allocLength) m_pchData[index] = ch;
}

void CString::MakeUpper() {
  CopyBeforeWrite();
  std::transform(m_pchData, m_pchData + GetLength(), m_pchData, kxwan::AsciiUpper);
}

void CString::MakeLower() {
  CopyBeforeWrite();
  std::transform(m_pchData, m_pchData + GetLength(), m_pchData, kxwan::AsciiLower);
}

void CString::MakeReverse() {
  CopyBeforeWrite();
  std::reverse(m_pchData, m_pchData + GetLength());
}

void CString::ConcatCopy(int length1, const char* text1, int length2, const char* text2) {
  const int second = std::min(length2, kxwan::kMaxTextLength - length1);
  if (length1 + second == 0) return;
  AllocBuffer(length1 + second);
  StoreText(GetData(), 0, text1, length1);
  StoreText(GetData(), length1, text2, second);
}

void CString::ConcatInPlace(int length, const char* text) {
  if (length <= 0) return;
  CStringData* data = GetData();
  if (data->refs < 2 && length <= data->allocLength - data->dataLength) {
    StoreText(data, data->dataLength, text, length);
    SetLength(data, data->dataLength + length);
    return;
  }
  ConcatCopy(data->dataLength, m_pchData, length, text);
  kxwan::FreeData(data);
}

CString& CString::operator+=(const CString& text) {
  ConcatInPlace(text.GetLength(), text.m_pchData);
  return *this;
}

CString& CString::operator+=(char ch) {
  ConcatInPlace(1, &ch);
  return *this;
}

CString& CString::operator+=(const char* text) {
  ConcatInPlace(TextLength(text), text);
  return *this;
}

CString operator+(const CString& left, const CString& right) {
  return Joined(left.String(), left.GetLength(), right.String(), right.GetLength());
}

CString operator+(const CString& left, const char* right) {
  return Joined(left.String(), left.GetLength(), right, TextLength(right));
}

CString operator+(const char* left, const CString& right) {
  return Joined(left, TextLength(left), right.String(), right.GetLength());
}

CString operator+(char left, const CString& right) {
  return Joined(&left, 1, right.String(), right.GetLength());
}

CString operator+(const CString& left, char right) {
  return Joined(left.String(), left.GetLength(), &right, 1);
}
