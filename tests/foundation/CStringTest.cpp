#include <KXWAN/foundation/CString.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

namespace {

bool memoryExhausted = false;

int Refs(const CString& text) { return text.GetData()->refs; }
int Room(const CString& text) { return text.GetData()->allocLength; }
std::string Whole(const CString& text) {
  return {text.String(), static_cast<size_t>(text.GetLength())};
}

}  // namespace

void* operator new[](size_t size, const std::nothrow_t&) noexcept {
  return memoryExhausted ? nullptr : operator new[](size);
}

TEST(CString, ConstructsAnExactBufferOrTheSharedEmptyText) {
  const unsigned char bytes[] = {'a', 0xE9, 0};
  const struct {
    const char* what;
    CString text;
    std::string expected;
  } cases[] = {
      {"nothing", CString(), ""},
      {"null", CString(static_cast<const char*>(nullptr)), ""},
      {"empty", CString(""), ""},
      {"text", CString("abc"), "abc"},
      {"unsigned", CString(bytes), "a\xE9"},
      {"bytes with a NUL", CString("a\0b", 3), std::string("a\0b", 3)},
      {"no bytes", CString("abc", 0), ""},
      {"a negative number of bytes", CString("abc", -5), ""},
      {"repeated", CString('x', 3), "xxx"},
      {"repeated never", CString('x', -1), ""},
      {"join", CString("ab") + "c" + CString('d') + 'e', "abcde"},
      {"join in front", 'a' + CString("b"), "ab"},
      {"join in front", "ab" + CString("c"), "abc"},
      {"join of nothing", CString() + "", ""},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Whole(row.text), row.expected);
    EXPECT_EQ(row.text.String()[row.expected.size()], '\0');
    EXPECT_EQ(Room(row.text), static_cast<int>(row.expected.size()));
    EXPECT_EQ(Refs(row.text), row.expected.empty() ? -1 : 1);
    EXPECT_EQ(row.text.GetData() == _afxDataNil, row.expected.empty());
  }
  EXPECT_EQ(AfxGetEmptyString().String(), _afxPchNil);
}

TEST(CString, CopiesShareTheirCharacters) {
  CString a("abc");
  CString b(a);
  CString c;
  c = a;
  b.MakeUpper();
  EXPECT_STREQ(a.String(), "ABC");
  EXPECT_STREQ(c.String(), "ABC");
  EXPECT_EQ(Refs(a), 1);
  c = "xy";  // fits, so all see it
  EXPECT_EQ(Whole(a), "xy");
  c = "longer";
  EXPECT_EQ(Whole(a), "xy");
  b = CString();  // the empty text counts as locked: its characters, none, are copied
  EXPECT_EQ(Whole(a), "");
}

TEST(CString, LockedTextsAreCopiedAndFreedWithTheirOwner) {
  CString outer;
  CString a("abc");
  {
    CString locked("xyz");
    EXPECT_EQ(locked.LockBuffer(), locked.String());
    EXPECT_EQ(Refs(locked), -1);
    locked.Empty();
    EXPECT_STREQ(locked.String(), "xyz");
    const CString copy(locked);
    outer = locked;
    EXPECT_NE(copy.String(), locked.String());
    locked = a;
    EXPECT_NE(locked.String(), a.String());
    locked += " grown beyond its room, which unlocks it";
    EXPECT_EQ(Refs(locked), 1);
    locked.LockBuffer();
  }
  EXPECT_STREQ(outer.String(), "xyz");
  CString empty;
  empty.LockBuffer();
  empty.UnlockBuffer();
  EXPECT_EQ(Refs(empty), -1);
}

TEST(CString, GivesItsBuffer) {
  CString text("abc");
  EXPECT_EQ(text.GetBuffer(3), text.String());
  char* buffer = text.GetBuffer(10);
  EXPECT_EQ(Room(text), 10);
  EXPECT_STREQ(buffer, "abc");
  std::strcpy(buffer, "0123456");
  text.ReleaseBuffer();
  EXPECT_EQ(text.GetLength(), 7);
  text.ReleaseBuffer(2);
  EXPECT_STREQ(text.String(), "01");
  text.ReleaseBuffer(1000);
  EXPECT_EQ(text.GetLength(), 10) << "cut to the room";
  text.ReleaseBuffer(2);
  text.FreeExtra();
  EXPECT_EQ(Room(text), 2);
  EXPECT_STREQ(text.GetBufferSetLength(5), "01");
  EXPECT_EQ(text.GetLength(), 5);
}

TEST(CString, TakesAShareOfItsOwnText) {
  for (const bool lock : {false, true}) {
    CString text("abc");
    if (lock) text.LockBuffer();
    text += text;
    EXPECT_STREQ(text.String(), "abcabc");
    if (lock) text.LockBuffer();
    text += text.String() + 4;
    EXPECT_STREQ(text.String(), "abcabcbc");
    if (lock) text.LockBuffer();
    text = text.String() + 5;
    EXPECT_STREQ(text.String(), "cbc");
    text.Insert(1, text.String());
    EXPECT_STREQ(text.String(), "ccbcbc");
    EXPECT_EQ(text.Replace(text.String() + 4, "--long--"), 2);
    EXPECT_STREQ(text.String(), "cc--long----long--");
    if (lock) text.LockBuffer();
    text.Format("%s|%s", text.String(), text.Left(2).String());
    EXPECT_STREQ(text.String(), "cc--long----long--|cc");
    if (lock) text.LockBuffer();
  }
}

TEST(CString, AppendsInPlaceWhileThereIsRoom) {
  CString text("ab");
  text.GetBuffer(5);
  const char* place = text.String();
  text += "cd";
  text += 'e';
  text += static_cast<const char*>(nullptr);
  EXPECT_EQ(text.String(), place);
  EXPECT_STREQ(text.String(), "abcde");
  text += CString("fg");
  EXPECT_EQ(Whole(text), "abcdefg");
  EXPECT_EQ(Room(text), 7);
}

TEST(CString, SurvivesExhaustedMemory) {
  CString kept("abc");
  CString lost("abc");
  memoryExhausted = true;
  const CString none("text");
  EXPECT_EQ(kept.GetBuffer(100), nullptr);
  EXPECT_EQ(kept.Insert(1, "xyz"), 3);
  EXPECT_EQ(kept.Replace("a", "xyz"), 0);
  lost += "more";
  CString formatted("abc");
  formatted.Format("%300d", 1);
  memoryExhausted = false;
  EXPECT_EQ(none.String(), _afxPchNil);
  EXPECT_STREQ(kept.String(), "abc");
  EXPECT_STREQ(lost.String(), "");
  EXPECT_STREQ(formatted.String(), "");
}

TEST(CString, HandlesArraysOfTexts) {
  alignas(CString) unsigned char memory[2][2 * sizeof(CString)];
  auto* from = reinterpret_cast<CString*>(memory[0]);
  auto* to = reinterpret_cast<CString*>(memory[1]);
  ConstructElements(from, 2);
  ConstructElements(to, 2);
  from[1] = "abc";
  CopyElements(to, from, 2);
  EXPECT_TRUE(to[0].IsEmpty());
  EXPECT_EQ(to[1].String(), from[1].String());
  DestructElements(from, 2);
  EXPECT_STREQ(to[1].String(), "abc");
  DestructElements(to, 2);
}
