#include <KXWAN/foundation/CString.h>
#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

// Unlike Format it is not checked by the compiler: the odd conversions are the point.
void Print(CString& text, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  text.FormatV(format, arguments);
  va_end(arguments);
}

}  // namespace

#define ROW(room, expected, ...)                              \
  {                                                           \
    room, expected, [](CString& s) { Print(s, __VA_ARGS__); } \
  }

TEST(CStringFormat, ReservesTheEstimateAndFormats) {
  const char unterminated[] = {'a', 'b'};
  static const char* const two = unterminated;
  static const std::string reply(5000, 'r');
  const struct {
    int room;
    std::string expected;
    void (*print)(CString&);
  } cases[] = {
      ROW(35, "5", "%d", 5),
      ROW(38, "-0x1f", "-%#x", 31),
      ROW(6 * 32 + 16 + 13 + 10 + 7 + 4, "1 2 3 4 5 6", "%i %o %u %x %X %hd", 1, 2, 3, 4, 5, 6),
      ROW(32, "        -7", "%*.*d", 10, 1, -7),
      ROW(3 + 1, "%%", "%%%%"),
      ROW(2 + 6, "x(null)", "%c%s", 'x', static_cast<char*>(nullptr)),
      ROW(5000, reply, "%s", reply.c_str()),
      ROW(9, "       ab", "%9.2s", "abcdef"),
      ROW(2, "ab", "%.2s", two),
      ROW(128, "1.5", "%g", 1.5),
      ROW(128, "2.5", "%Lg", 2.5L),
      ROW(64, "12 34", "%ld %lu", 12L, 34UL),
      ROW(3 + 4, "1.500000 next", "%f %s", 1.5, "next"),
      ROW(300, std::string(291, ' ') + "1.000E+00", "%300.3E", 1.0),
      ROW(4 + 3 + 4, "123456789012 next", "%lld %s", 123456789012LL, "next"),
      ROW(8 + 7 + 6 + 5 + 4 + 32, "7 is  9", "%zu is %2d", static_cast<size_t>(7), 9),
      ROW(1, "", "%c", 0),
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.expected);
    CString text;
    row.print(text);
    EXPECT_EQ(text.GetLength(), static_cast<int>(row.expected.size()));
    EXPECT_EQ(text.String(), row.expected);
    EXPECT_GE(text.GetData()->allocLength, row.room);
  }
}

TEST(CStringFormat, SurvivesFormatsThatEndEarlyOrAskTooMuch) {
  const char* const formats[] = {"%",  "%5",   "%.", "%-", "%l", "%h",
                                 "%F", "%I64", "%*", "a%", "%#", "%99999999999999999999d"};
  for (const char* format : formats) {
    SCOPED_TRACE(format);
    CString text("before");
    Print(text, format, 1, 2);
    EXPECT_LE(text.GetLength(), 10);
  }
}

TEST(CStringFormat, HasNoStringResources) {
  CString text("before");
  text.Format(42U, 7);
  EXPECT_TRUE(text.IsEmpty());
  EXPECT_EQ(text.LoadString(42), 0);
}
