#pragma once

#include <KXWAN/foundation/CString.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kxwan {

// The longest text that a CString can count.
constexpr int32_t kMaxTextLength = INT32_MAX;

// The length of a C text, 0 for a null one, at most kMaxTextLength.
inline int TextLength(const char* text) {
  if (text == nullptr) return 0;
  return static_cast<int>(std::min<size_t>(std::strlen(text), kMaxTextLength));
}

// Sets the length and the NUL behind it. A length that does not fit is cut, and the shared empty
// text is never written to.
inline void SetLength(CStringData* data, int length) {
  if (data == _afxDataNil) return;
  data->dataLength = std::clamp(length, 0, data->allocLength);
  data->Text()[data->dataLength] = '\0';
}

// Copies characters to a place in the buffer, also from that same buffer, as far as they fit:
// where an allocation failed, nothing does.
inline void StoreText(CStringData* data, int offset, const char* text, int length) {
  const int count = std::min(length, data->allocLength - offset);
  if (count > 0) std::memmove(data->Text() + offset, text, static_cast<size_t>(count));
}

// Frees a locked buffer; leaves an ordinary one, which may have other owners, and the shared empty
// text alone.
void FreeData(CStringData* data);

// Whether a text lies in a buffer.
bool LiesIn(const CStringData* data, const char* text);

}  // namespace kxwan
