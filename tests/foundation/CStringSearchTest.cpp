#include <KXWAN/foundation/CString.h>
#include <gtest/gtest.h>

#include <climits>

TEST(CStringSearch, GivesThePositionOrMinusOne) {
  const CString text("\r\nOK\r\n");
  const CString abc("abcabc");
  const struct {
    const char* what;
    int found;
    int expected;
  } cases[] = {
      {"character from", abc.Find('b', 2), 4},
      {"character at the length", abc.Find('\0', 6), -1},
      {"character from before the text", abc.Find('a', INT_MIN), 0},
      {"text at the length", abc.Find("x", 6), -1},
      {"empty text at the length", abc.Find("", 6), 6},
      {"empty text past the length", abc.Find("", 7), -1},
      {"text from before the text", abc.Find("b", -1), 1},
      {"other case", text.FindNoCase("ok", 0), 2},
      {"other case, absent", abc.FindNoCase("ABD"), -1},
      {"other case, not behind a NUL", CString("a\0b", 3).FindNoCase("B"), -1},
      {"other case folds letters only", CString("[{\xC9").FindNoCase("{["), -1},
      {"empty text in any case past the length", abc.FindNoCase("", 7), -1},
      {"last character", abc.ReverseFind('b'), 4},
      {"one of", abc.FindOneOf("xcb"), 1},
  };
  for (const auto& row : cases) EXPECT_EQ(row.found, row.expected) << row.what;
}

TEST(CStringSearch, Slices) {
  CString abc("abc");
  const struct {
    const char* what;
    CString slice;
    const char* expected;
  } cases[] = {
      {"Left(-1)", abc.Left(-1), ""},
      {"Right(2)", abc.Right(2), "bc"},
      {"Mid(5, 10)", abc.Mid(5, 10), ""},
      {"Mid(1, 10)", abc.Mid(1, 10), "bc"},
      {"Mid(-1, 2)", abc.Mid(-1, 2), "ab"},
      {"Mid(1, -1)", abc.Mid(1, -1), ""},
      {"Mid(1)", abc.Mid(1), "bc"},
      {"Mid(INT_MIN)", abc.Mid(INT_MIN), "abc"},
      {"SpanIncluding", abc.SpanIncluding("ba"), "ab"},
      {"SpanExcluding", abc.SpanExcluding("xc"), "ab"},
  };
  for (const auto& row : cases) EXPECT_STREQ(row.slice.String(), row.expected) << row.what;
  for (const CString& whole : {abc.Left(3), abc.Right(9), abc.Mid(0, 3), abc.SpanExcluding("x")}) {
    EXPECT_EQ(whole.String(), abc.String()) << "a whole slice shares";
  }
}
