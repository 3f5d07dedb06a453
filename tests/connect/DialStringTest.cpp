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
  const std::string whole = "*99***3#";
  for (int size = -1; size <= 10; ++size) {
    std::string buffer(11, '?');
    EXPECT_EQ(kxwan::DialNumber("", "", buffer.data(), size), size > 8) << size;
    const size_t room = static_cast<size_t>(std::max(size, 0));
    const std::string written = room > 0 ? whole.substr(0, room - 1) + '\0' : "";
    EXPECT_EQ(buffer, written + std::string(11 - written.size(), '?')) << size;
  }
}

}  // namespace
