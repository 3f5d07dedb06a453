#include <KXWAN/foundation/CString.h>
#include <gtest/gtest.h>

#include <new>
#include <string>

namespace {

bool memoryExhausted = false;

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
    CString text;
    std::string expected;
  } cases[] = {
      {CString(), ""},      {static_cast<const char*>(nullptr), ""},
      {bytes, "a\xE9"},     {{"a\0b", 3}, std::string("a\0b", 3)},
      {{"abc", -5}, ""},    {{'x', 3}, "xxx"},
      {{'x', -1}, ""},      {'a' + CString("b") + "c" + CString('d') + 'e', "abcde"},
      {"" + CString(), ""},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.expected);
    EXPECT_EQ(Whole(row.text), row.expected);
    EXPECT_EQ(row.text.GetData()->allocLength, static_cast<int>(row.expected.size()));
    EXPECT_EQ(row.text.GetData()->refs, row.expected.empty() ? -1 : 1);
    EXPECT_EQ(row.text.String() == AfxGetEmptyString().String(), row.expected.empty());
  }
}

TEST(CString, CopiesShareTheirCharacters) {
  const CString a("abc");
  CString b(a);
  CString c;
  c = a;
  b.MakeUpper();
  EXPECT_EQ(Whole(a) + Whole(c), "ABCABC");
  EXPECT_EQ(a.GetData()->refs, 1);
  c = "xy";  // fits, so all see it
  EXPECT_EQ(Whole(a), "xy");
  c = "longer";
  EXPECT_EQ(Whole(a), "xy");
  b = CString();  // the empty text counts as locked: its characters, none, are copied
  EXPECT_EQ(Whole(a), "");
}

TEST(CString, LockedTextsAreCopiedAndFreedWithTheirOwner) {
  CString outer;
  const CString a("abc");
  {
    CString locked("xyz");
    EXPECT_EQ(locked.LockBuffer(), locked.String());
    locked.Empty();
    EXPECT_STREQ(locked.String(), "xyz");
    outer = locked;
    EXPECT_NE(CString(locked).String(), locked.String());
    locked = a;
    EXPECT_NE(locked.String(), a.String());
    locked += " grown beyond its room, which unlocks it";
    EXPECT_EQ(locked.GetData()->refs, 1);
    locked.LockBuffer();
  }
  EXPECT_STREQ(outer.String(), "xyz");
}

TEST(CString, GivesItsBufferAndAppendsWhileThereIsRoom) {
  CString text("abc");
  char* buffer = text.GetBuffer(8);
  EXPECT_STREQ(buffer, "abc");
  text += "de";
  text += 'f';
  EXPECT_EQ(text.String(), buffer);
  text.ReleaseBuffer(1000);
  EXPECT_EQ(text.GetLength(), 8) << "cut to the room";
  text.ReleaseBuffer();
  EXPECT_EQ(Whole(text), "abcdef");
  text.FreeExtra();
  EXPECT_EQ(text.GetData()->allocLength, 6);
  text += CString("gh");
  EXPECT_EQ(Whole(text), "abcdefgh");
}

TEST(CString, TakesAShareOfItsOwnText) {
  for (const bool lock : {false, true}) {
    CString text("abc");
    if (lock) text.LockBuffer();
    text += text;
    text += text.String() + 4;
    EXPECT_STREQ(text.String(), "abcabcbc");
    if (lock) text.LockBuffer();
    text = text.String() + 5;
    text.Insert(1, text.String());
    EXPECT_STREQ(text.String(), "ccbcbc");
    EXPECT_EQ(text.Replace(text.String() + 4, "--long--"), 2);
    if (lock) text.LockBuffer();
    text.Format("%s|%s", text.String(), text.Left(2).String());
    EXPECT_STREQ(text.String(), "cc--long----long--|cc");
    if (lock) text.LockBuffer();
  }
}

TEST(CString, SurvivesExhaustedMemory) {
  CString kept("abc");
  CString lost("abc");
  memoryExhausted = true;
  EXPECT_EQ(kept.GetBuffer(100), nullptr);
  EXPECT_EQ(kept.Insert(1, "xyz"), 3);
  EXPECT_EQ(kept.Replace("a", "xyz"), 0);
  lost += "more";
  lost.Format("%300d", 1);
  memoryExhausted = false;
  EXPECT_EQ(Whole(kept) + Whole(lost), "abc");
}
