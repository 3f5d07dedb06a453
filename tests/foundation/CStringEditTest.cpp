#include <KXWAN/foundation/CString.h>
#include <gtest/gtest.h>

#include <climits>
#include <string>

using namespace std::string_literals;

namespace {

struct Case {
  const char* what;
  std::string text;
  int (*edit)(CString& text);
  std::string expected;
  int gives = 0;
};

template <typename... Set>
int TrimmedLeft(CString& text, Set... set) {
  text.TrimLeft(set...);
  return 0;
}

template <typename... Set>
int TrimmedRight(CString& text, Set... set) {
  text.TrimRight(set...);
  return 0;
}

const Case kCases[] = {
    {"white space in front", " \t\r\n\v\fab ", [](CString& s) { return TrimmedLeft(s); }, "ab "},
    {"white space behind", " ab \t\r\n", [](CString& s) { return TrimmedRight(s); }, " ab"},
    {"nothing but white space", "  ", [](CString& s) { return TrimmedRight(s); }, ""},
    {"a high byte is no space", "\xA0", [](CString& s) { return TrimmedLeft(s); }, "\xA0"},
    {"a run", "xxaxx", [](CString& s) { return TrimmedLeft(s, 'x') + TrimmedRight(s, 'x'); }, "a"},
    {"a set behind", "xyaxy", [](CString& s) { return TrimmedRight(s, "yx"); }, "xya"},
    {"no set", "xa",
     [](CString& s) { return TrimmedLeft(s, "") + TrimmedLeft(s, static_cast<char*>(nullptr)); },
     "xa"},
    {"replace a character by itself", "aba", [](CString& s) { return s.Replace('a', 'a'); }, "aba"},
    {"matches do not overlap", "aaa", [](CString& s) { return s.Replace("aa", "b"); }, "ba", 1},
    {"what was put in is not searched", "aa", [](CString& s) { return s.Replace("a", "aa"); },
     "aaaa", 2},
    {"longer", "-a-a", [](CString& s) { return s.Replace("a", "xyz"); }, "-xyz-xyz", 2},
    {"by nothing", "abcab", [](CString& s) { return s.Replace("ab", nullptr); }, "c", 2},
    {"of nothing", "ab", [](CString& s) { return s.Replace("", "x") + s.Replace(nullptr, "x"); },
     "ab"},
    {"across NULs", "a\0ba\0a"s, [](CString& s) { return s.Replace("a", "xy"); }, "xy\0bxy\0xy"s,
     3},
    {"insert before the front", "bc", [](CString& s) { return s.Insert(-9, "a"); }, "abc", 3},
    {"insert past the end", "ab", [](CString& s) { return s.Insert(INT_MAX, "cd"); }, "abcd", 4},
    {"insert nothing", "ab", [](CString& s) { return s.Insert(1, nullptr) * s.Insert(1, ""); },
     "ab", 4},
    {"insert a character past the end", "a", [](CString& s) { return s.Insert(9, 'b'); }, "ab", 2},
    {"delete gives the length before", "abc", [](CString& s) { return s.Delete(1); }, "ac", 3},
    {"delete from before the front", "abc", [](CString& s) { return s.Delete(-2, 2); }, "c", 3},
    {"delete more than there is", "abc", [](CString& s) { return s.Delete(1, INT_MAX); }, "a", 3},
    {"delete nothing", "abc", [](CString& s) { return s.Delete(0, 0); }, "abc", 3},
    {"remove and replace characters", "abaca",
     [](CString& s) { return s.Remove('a') * 10 + s.Replace('b', 'x'); }, "xc", 31},
    {"drop all", "abc", [](CString& s) { return s.DeleteRight(4); }, ""},
    {"drop less than nothing", "abc", [](CString& s) { return s.DeleteRight(INT_MIN); }, "abc", 3},
    {"set within, and nowhere else", "abc",
     [](CString& s) {
       for (const int index : {1, 3, -1, INT_MAX}) s.SetAt(index, 'x');
       return 0;
     },
     "axc"},
    {"upper case", "az{`\xE9", [](CString& s) { return s.MakeUpper(), 0; }, "AZ{`\xE9"},
    {"lower case", "AZ[@\xC9", [](CString& s) { return s.MakeLower(), 0; }, "az[@\xC9"},
    {"reverse", "abc", [](CString& s) { return s.MakeReverse(), 0; }, "cba"},
};

}  // namespace

TEST(CStringEdit, ChangesTheTextInPlace) {
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.what);
    CString text(row.text.data(), static_cast<int>(row.text.size()));
    EXPECT_EQ(row.edit(text), row.gives);
    EXPECT_EQ(std::string(text.String(), static_cast<size_t>(text.GetLength())), row.expected);
    EXPECT_EQ(text.String()[text.GetLength()], '\0');
  }
}

TEST(CStringEdit, LeavesTheSharedEmptyTextAlone) {
  for (const Case& row : kCases) {
    CString empty;
    row.edit(empty);
    EXPECT_EQ(_afxPchNil[0], '\0') << row.what;
  }
}
