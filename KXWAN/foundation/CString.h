#pragma once

#include <KXWAN/foundation/Export.h>

#include <cstdarg>
#include <cstdint>

// What lies in front of the characters of a CString.
struct CStringData {
  int32_t refs;         // 1 for an ordinary buffer, -1 for a locked one and for the empty string
  int32_t dataLength;   // characters in use, without the terminating NUL
  int32_t allocLength;  // characters that fit, without the terminating NUL

  char* Text() { return reinterpret_cast<char*>(this + 1); }
};

// The library's 8-bit text. An object is one pointer to its characters; a CStringData lies in front
// of them. Every empty text is one shared buffer.
//
// Copies share their characters and the sharing is never counted: a change made in place through
// one copy (trimming, upper case, Replace, SetAt, appending what still fits) is seen by all. An
// ordinary buffer is never freed, so a text pointer taken from one stays good. A locked buffer is
// freed by the first text that lets go of it, also for those that shared it before the lock; copies
// of a locked text are copies of the characters. Assigning a C text or an empty text is such a
// change in place wherever it fits.
//
// No operation reports an error. Positions count from 0 and a search that finds nothing gives -1.
// A CString and the copies that share its characters are used by one thread at a time. The empty
// text that all share is never written to.
class KXWAN_API CString {
 public:
  CString();
  CString(const CString& source);
  CString(const char* text);
  CString(const unsigned char* text);
  CString(const char* text, int length);  // exactly length bytes, NULs included
  CString(char ch, int repeat = 1);
  ~CString();

  CString& operator=(const CString& source);
  CString& operator=(const char* text);
  CString& operator=(char ch);

  // The characters, NUL-terminated, owned by this object. An object in zeroed memory reads as
  // empty.
  const char* String() const { return m_pchData != nullptr ? m_pchData : ""; }
  int GetLength() const { return m_pchData != nullptr ? GetData()->dataLength : 0; }
  bool IsEmpty() const { return GetLength() == 0; }

  // Buffer access. GetBuffer gives at least minLength characters of room behind a writable pointer,
  // or null, the text unchanged, when memory is exhausted;
  // ReleaseBuffer ends the access and takes the new length (-1: up to the first NUL).
  char* GetBuffer(int minLength);
  void ReleaseBuffer(int newLength = -1);
  char* GetBufferSetLength(int length);
  char* LockBuffer();
  void UnlockBuffer();
  void FreeExtra();
  void Empty();  // a locked text stays as it is

  // Searching.
  int Find(char ch) const;
  int Find(char ch, int start) const;
  int Find(const char* sub) const;
  int Find(const char* sub, int start) const;
  int FindNoCase(const char* sub, int start = 0) const;
  int ReverseFind(char ch) const;
  int FindOneOf(const char* set) const;

  // Slicing. A slice that is the whole text shares its characters.
  CString Left(int count) const;
  CString Right(int count) const;
  CString Mid(int first, int count) const;
  CString Mid(int first) const;
  CString SpanIncluding(const char* set) const;
  CString SpanExcluding(const char* set) const;

  // Changing in place.
  void TrimLeft();
  void TrimRight();
  void TrimLeft(char ch);
  void TrimRight(char ch);
  void TrimLeft(const char* set);
  void TrimRight(const char* set);
  int Remove(char ch);                                    // gives the number removed
  int Replace(char oldChar, char newChar);                // gives the number replaced
  int Replace(const char* oldText, const char* newText);  // gives the number replaced
  int Insert(int index, const char* text);                // gives the new length
  int Insert(int index, char ch);                         // gives the new length
  int Delete(int index, int count = 1);                   // gives the length before
  int DeleteRight(int count);                             // gives the new length
  void SetAt(int index, char ch);
  void MakeUpper();  // ASCII letters only, like MakeLower
  void MakeLower();
  void MakeReverse();

  CString& operator+=(const CString& text);
  CString& operator+=(char ch);
  CString& operator+=(const char* text);

  // printf formatting. The room is estimated from the format and grows when a conversion outruns
  // it.
  void Format(const char* format, ...) KXWAN_PRINTF(2, 3);
  void FormatV(const char* format, va_list arguments) KXWAN_PRINTF(2, 0);
  // There are no string resources: the text becomes empty.
  void Format(unsigned int id, ...);
  int LoadString(unsigned int id);  // always 0

  // The buffer beneath, for code that builds on it. Init, AllocBuffer and ConcatCopy point at other
  // characters and let go of the buffer that was there; Release also frees it when it is locked.
  CStringData* GetData() const { return reinterpret_cast<CStringData*>(m_pchData) - 1; }
  void Init();
  void AllocBuffer(int length);
  void Release();
  void CopyBeforeWrite();
  void AllocBeforeWrite(int length);
  void AssignCopy(int length, const char* text);
  void AllocCopy(CString& copy, int count, int first, int extra) const;
  void ConcatCopy(int length1, const char* text1, int length2, const char* text2);
  void ConcatInPlace(int length, const char* text);

 private:
  char* m_pchData;
};

KXWAN_API CString operator+(const CString& left, const CString& right);
KXWAN_API CString operator+(const CString& left, const char* right);
KXWAN_API CString operator+(const char* left, const CString& right);
KXWAN_API CString operator+(char left, const CString& right);
KXWAN_API CString operator+(const CString& left, char right);

// Arrays of texts: make all empty, assign one by one, release one by one.
KXWAN_API void ConstructElements(CString* elements, int count);
KXWAN_API void CopyElements(CString* destination, const CString* source, int count);
KXWAN_API void DestructElements(CString* elements, int count);

// h = h * 33 + c over the characters as signed numbers, in 32 bits.
KXWAN_API unsigned int HashKey(const char* key);
KXWAN_API unsigned int HashKey(const short* key);

// The shared empty text: a header with a NUL behind it, a pointer to the header, and one to the
// NUL.
extern KXWAN_API int32_t _afxInitData[];
extern KXWAN_API CStringData* _afxDataNil;
extern KXWAN_API const char* _afxPchNil;
KXWAN_API const CString& AfxGetEmptyString();

// Does nothing: this type does not report an exhausted heap.
KXWAN_API void AfxThrowMemoryException();
