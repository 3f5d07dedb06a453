#include <KXWAN/connect/DialString.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace {

struct Case {
  const char* manufacturer;
  const char* model;
  const char* number;
};

const Case kCases[] = {
    {"Motorola", "L Series", "*99#"},      {"Motorola", "V60", "*99***3#"},
    {"motorola", "L Series", "*99***3#"},  {"GTRAN", "", "*99#"},
    {"Sierra Wireless, Inc.", "", "*99#"}, {"Nokia SIEMENS", "", "*99#"},
    {"SIEMENS", "", "*99***2#"},           {"Panasonic", "", "*99***3#"},
    {"Novatel", "", "*99***3#"},           {"", "", "*99***3#"},
};

TEST(GetGPRSDialedNumber, FollowsFromTheTexts) {
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.manufacturer);
    char number[16];
    GetGPRSDialedNumber(row.manufacturer, row.model, number, sizeof number);
    EXPECT_STREQ(number, row.number);
    EXPECT_EQ(DoesGPRSDeviceRequire57600(row.manufacturer, row.model),
              std::strstr(row.manufacturer, "Motorola") != nullptr);
  }
}

TEST(GetGPRSDialedNumber, BoundsOnlyTheShortNumber) {
  char number[16] = "???????????????";
  GetGPRSDialedNumber("Nokia", "", number, -1);
  EXPECT_EQ(std::string(number, 2), "??");
  GetGPRSDialedNumber("Nokia", "", number, 3);
  EXPECT_EQ(std::string(number, 5), "*99??");
  GetGPRSDialedNumber("Novatel", "", number, 3);
  EXPECT_STREQ(number, "*99***3#");
}

TEST(DialNumber, NeverPassesTheSizeAndAlwaysEnds) {
  for (const Case& row : kCases) {
    const std::string whole = row.number;
    for (int size = -1; size <= 10; ++size) {
      char buffer[12] = "???????????";
      const bool fits = kxwan::DialNumber(row.manufacturer, row.model, buffer, size);
      EXPECT_EQ(fits, static_cast<int>(whole.size()) < size) << whole << size;
      const size_t used = static_cast<size_t>(std::max(size, 0));
      EXPECT_EQ(buffer[used], '?') << whole << size;
      buffer[used] = '\0';
      EXPECT_EQ(std::string(buffer), whole.substr(0, used > 0 ? used - 1 : 0)) << size;
    }
  }
}

}  // namespace
