#include <KXWAN/foundation/CString.h>

#include <KXWAN/foundation/CStringPrivate.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <new>
#include <type_traits>

using kxwan::FreeData;
using kxwan::SetLength;
using kxwan::StoreText;
using kxwan::TextLength;

static_assert(sizeof(CString) == sizeof(void*), "an object is its text pointer");
static_assert(std::is_standard_layout_v<CStringData> && sizeof(CStringData) == 12);
static_assert(offsetof(CStringData, refs) == 0 && offsetof(CStringData, dataLength) == 4 &&
              offsetof(CStringData, allocLength) == 8);

// refs, dataLength, allocLength and the four bytes whose first is the NUL.
int32_t _afxInitData[] = {-1, 0, 0, 0};
CStringData* _afxDataNil = reinterpret_cast<CStringData*>(_afxInitData);
const char* _afxPchNil = reinterpret_cast<const char*>(_afxInitData + 3);

namespace kxwan {

void FreeData(CStringData* data) {
  // Deliberate: refs is never counted up, so an ordinary buffer (1) outlives all its owners.
  if (data->refs <= 0 && data->Text() != _afxPchNil) delete[] reinterpret_cast<char*>(data);
}

bool LiesIn(const CStringData* data, const char* text) {
  const char* begin = reinterpret_cast<const char*>(data + 1);
  const std::less<const char*> before;
  return !before(text, begin) && !before(begin + data->allocLength, text);
}

}  // namespace kxwan

namespace {

template <typename Char>
unsigned int Hash(const Char* key) {
  uint32_t hash = 0;
  for (; *key != 0; ++key) hash = hash * 33 + static_cast<uint32_t>(int32_t{*key});
  return hash;
}

}  // namespace

void AfxThrowMemoryException() {}

const CString& AfxGetEmptyString() {
  static const CString empty;
  return empty;
}

void CString::Init() { m_pchData = const_cast<char*>(_afxPchNil); }

void CString::AllocBuffer(int length) {
  Init();
  if (length <= 0) return;
  const size_t size = sizeof(CStringData) + static_cast<size_t>(length) + 1;
  char* block = new (std::nothrow) char[size];
  if (block == nullptr) {
    AfxThrowMemoryException();
    return;
  }
  CStringData* data = new (block) CStringData{1, length, length};
  m_pchData = data->Text();
  m_pchData[length] = '\0';
}

void CString::Release() {
  FreeData(GetData());
  Init();
}

void CString::CopyBeforeWrite() {
  CStringData* shared = GetData();
  if (shared->refs < 2) return;
  AllocBuffer(shared->dataLength);
  StoreText(GetData(), 0, shared->Text(), shared->dataLength);
}

void CString::AllocBeforeWrite(int length) {
  if (GetData()->refs < 2 && length <= GetData()->allocLength) return;
  Release();
  AllocBuffer(length);
}

void CString::AssignCopy(int length, const char* text) {
  AllocBeforeWrite(length);
  StoreText(GetData(), 0, text, length);
  SetLength(GetData(), length);
}

void CString::AllocCopy(CString& copy, int count, int first, int extra) const {
  const int start = std::clamp(first, 0, GetLength());
  const int taken = std::clamp(count, 0, GetLength() - start);
  const int room = std::min(std::max(extra, 0), kxwan::kMaxTextLength - taken);
  copy.AllocBuffer(taken + room);
  StoreText(copy.GetData(), 0, m_pchData + start, taken);
}

CString::CString() { Init(); }

CString::CString(const CString& source) {
  if (source.GetData()->refs >= 0) {
    m_pchData = source.m_pchData;
    return;
  }
  AllocBuffer(source.GetLength());
  StoreText(GetData(), 0, source.m_pchData, source.GetLength());
}

CString::CString(const char* text) : CString(text, TextLength(text)) {}

CString::CString(const unsigned char* text) : CString(reinterpret_cast<const char*>(text)) {}

CString::CString(const char* text, int length) {
  if (text == nullptr) length = 0;
  AllocBuffer(length);
  StoreText(GetData(), 0, text, length);
}

CString::CString(char ch, int repeat) {
  AllocBuffer(repeat);
  std::memset(m_pchData, ch, static_cast<size_t>(GetLength()));
}

CString::~CString() { FreeData(GetData()); }

CString& CString::operator=(const CString& source) {
  if (this == &source || m_pchData == source.m_pchData) return *this;
  const bool locked = GetData()->refs < 0 && GetData() != _afxDataNil;
  if (locked || source.GetData()->refs < 0) {
    AssignCopy(source.GetLength(), source.m_pchData);
  } else {
    Release();
    m_pchData = source.m_pchData;
  }
  return *this;
}

CString& CString::operator=(const char* text) {
  AssignCopy(TextLength(text), text);
  return *this;
}

CString& CString::operator=(char ch) {
  AssignCopy(1, &ch);
  return *this;
}

char* CString::GetBuffer(int minLength) {
  CStringData* old = GetData();
  if (old->refs < 2 && minLength <= old->allocLength) return m_pchData;
  const int room = std::max(minLength, old->dataLength);
  AllocBuffer(room);
  if (GetData()->allocLength < room) {
    m_pchData = old->Text();
    return nullptr;
  }
  StoreText(GetData(), 0, old->Text(), old->dataLength);
  SetLength(GetData(), old->dataLength);
  FreeData(old);
  return m_pchData;
}

void CString::ReleaseBuffer(int newLength) {
  CopyBeforeWrite();
  const size_t room = static_cast<size_t>(GetData()->allocLength);
  SetLength(GetData(), newLength == -1 ? static_cast<int>(strnlen(m_pchData, room)) : newLength);
}

char* CString::GetBufferSetLength(int length) {
  char* buffer = GetBuffer(length);
  if (buffer != nullptr) SetLength(GetData(), length);
  return buffer;
}

char* CString::LockBuffer() {
  char* buffer = GetBuffer(0);
  if (GetData() != _afxDataNil) GetData()->refs = -1;
  return buffer;
}

void CString::UnlockBuffer() {
  if (GetData() != _afxDataNil) GetData()->refs = 1;
}

void CString::FreeExtra() {
  CStringData* old = GetData();
  if (old->dataLength == old->allocLength) return;
  AllocBuffer(old->dataLength);
  StoreText(GetData(), 0, old->Text(), old->dataLength);
  FreeData(old);
}

void CString::Empty() {
  if (GetLength() == 0 || GetData()->refs < 0) return;
  Release();
}

void ConstructElements(CString* elements, int count) {
  for (int i = 0; i < count; ++i) new (elements + i) CString;
}

void CopyElements(CString* destination, const CString* source, int count) {
  for (int i = 0; i < count; ++i) destination[i] = source[i];
}

void DestructElements(CString* elements, int count) {
  for (int i = 0; i < count; ++i) elements[i].~CString();
}

unsigned int HashKey(const char* key) { return Hash(reinterpret_cast<const signed char*>(key)); }

unsigned int HashKey(const short* key) { return Hash(key); }
