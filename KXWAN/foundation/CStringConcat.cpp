#include <KXWAN/foundation/CString.h>

#include <KXWAN/foundation/CStringPrivate.h>

#include <algorithm>

using kxwan::StoreText;
using kxwan::TextLength;

namespace {

CString Joined(const char* left, int leftLength, const char* right, int rightLength) {
  CString joined;
  joined.ConcatCopy(leftLength, left, rightLength, right);
  return joined;
}

}  // namespace

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
    kxwan::SetLength(data, data->dataLength + length);
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
