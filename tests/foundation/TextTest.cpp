#include <KXWAN/foundation/TextPrivate.h>
#include <gtest/gtest.h>

#include <climits>
#include <string_view>

TEST(Text, ReadsNumbersWithinTheirRange) {
  const struct {
    const char* text;
    int32_t number;
  } cases[] = {
      {"", 0},
      {" \r\n12,5", 12},
      {"-7x", -7},
      {"+8", 8},
      {"+-8", 0},
      {"- 8", 0},
      {"007", 7},
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
  EXPECT_TRUE(kxwan::Contains("abc", nullptr));
  EXPECT_FALSE(kxwan::Contains(nullptr, "a"));
}

TEST(Text, CopiesAsMuchAsFits) {
  char buffer[] = "######";
  kxwan::CopyText(buffer, 0, "abcde");
  EXPECT_STREQ(buffer, "######");
  kxwan::CopyText(buffer, 5, "abcde");
  EXPECT_EQ(std::string_view(buffer, 6), std::string_view("abcd\0#", 6));
  kxwan::CopyText(buffer, 5, {"x\0y", 3});
  EXPECT_STREQ(buffer, "x");
}
