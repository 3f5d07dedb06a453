#include <KXWAN/foundation/TextPrivate.h>
#include <gtest/gtest.h>

#include <climits>
#include <string>

TEST(Text, ReadsNumbersWithinTheirRange) {
  const struct {
    const char* text;
    int32_t number;
  } cases[] = {
      {"", 0},
      {"abc", 0},
      {" \r\n12,5", 12},
      {"-7x", -7},
      {"+8", 8},
      {"+-8", 0},
      {"--8", 0},
      {"- 8", 0},
      {"-", 0},
      {"007", 7},
      {"0x1F", 0},
      {"2147483647", INT_MAX},
      {"2147483648", INT_MAX},
      {"-2147483648", INT_MIN},
      {"-2147483649", INT_MIN},
      {"99999999999999999999999", INT_MAX},
      {"-99999999999999999999999", INT_MIN},
  };
  for (const auto& row : cases) EXPECT_EQ(kxwan::ToInt(row.text), row.number) << row.text;
}

TEST(Text, CutsViews) {
  EXPECT_EQ(kxwan::TextBehind("x+CSQ: +CSQ: 5", "+CSQ: "), "+CSQ: 5");
  EXPECT_EQ(kxwan::TextBehind("no tag", "+CSQ:"), "no tag");
  EXPECT_EQ(kxwan::Trimmed(" \t\r\na b\v\f"), "a b");
  EXPECT_EQ(kxwan::Trimmed(" \r\n "), "");
  EXPECT_EQ(kxwan::View(CString("a\0b", 3)), std::string_view("a\0b", 3));
}

TEST(Text, ComparesNullAsEmpty) {
  EXPECT_TRUE(kxwan::Equals(nullptr, ""));
  EXPECT_FALSE(kxwan::Equals("a", "A"));
  EXPECT_TRUE(kxwan::Equals(CString("abc"), "abc"));
  EXPECT_TRUE(kxwan::Contains("abc", nullptr));
  EXPECT_FALSE(kxwan::Contains(nullptr, "a"));
  EXPECT_TRUE(kxwan::Contains(CString("abc"), "bc"));
  EXPECT_FALSE(kxwan::Contains("ABC", "b"));
}

TEST(Text, CopiesAsMuchAsFits) {
  const struct {
    size_t size;
    std::string_view text;
    std::string expected;
  } cases[] = {
      {6, "abcde", "abcde"},  {5, "abcde", "abcd"}, {1, "abcde", ""},
      {0, "abcde", "######"}, {6, "", ""},          {6, {"a\0b", 3}, "a"},
  };
  for (const auto& row : cases) {
    char buffer[] = "######|";
    kxwan::CopyText(buffer, row.size, row.text);
    EXPECT_EQ(std::string(buffer).substr(0, 6), row.expected);
    EXPECT_EQ(buffer[6], '|');
  }
}

TEST(Text, ScopedTextsFreeTheirOwnCharactersOnly) {
  CString kept("kept");
  {
    kxwan::ScopedText scoped("scoped");
    scoped = kept;
    EXPECT_STREQ(scoped.String(), "kept");
    EXPECT_NE(scoped.String(), kept.String());
  }
  EXPECT_STREQ(kept.String(), "kept");
  kxwan::DiscardText(kept);
  EXPECT_TRUE(kept.IsEmpty());
  EXPECT_EQ(kept.GetData(), _afxDataNil);
}
