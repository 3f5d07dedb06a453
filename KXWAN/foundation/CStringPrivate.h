#pragma once

#include <KXWAN/foundation/CString.h>

#include <cstdint>

namespace kxwan {

// The longest text that a CString can count.
constexpr int32_t kMaxTextLength = INT32_MAX;

// The length of a C text, 0 for a null one, at most kMaxTextLength.
int TextLength(const char* text);

// Sets the length and the NUL behind it. A length that does not fit is cut, and the shared empty
// text is never written to.
void SetLength(CStringData* data, int length);

// Copies characters to a place in the buffer, also from that same buffer, as far as they fit:
// where an allocation failed, nothing does.
void StoreText(CStringData* data, int offset, const char* text, int length);

// Frees a locked buffer; leaves an ordinary one, which may have other owners, and the shared empty
// text alone.
void FreeData(CStringData* data);

// Whether a text lies in a buffer.
bool LiesIn(const CStringData* data, const char* text);

}  // namespace kxwan
