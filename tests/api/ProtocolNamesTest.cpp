#include <KXWAN/api/ProtocolNames.h>
#include <gtest/gtest.h>

namespace {

struct Case {
  unsigned long platform;
  const char* text;
};

const Case kLists[] = {
    {0, "UNKNOWN"},
    {0xffffe800, "UNKNOWN"},
    {0x0006, "GPRS, EDGE"},
    {0x0020, "1xEVDO"},
    {0x1020, "1xEVDO (Rev-A)"},
    {0x1030, "1xRTT, 1xEVDO (Rev-A)"},
    {0xffffffff, "GSM, GPRS, EDGE, CDMA, 1xRTT, 1xEVDO (Rev-A), CSD, UMTS, TDMA, IDEN, 1xQNC"},
};

// Both ways.
const Case kNames[] = {
    {0x0001, "GSM"},   {0x0002, "GPRS"},   {0x0004, "EDGE"},  {0x0008, "CDMA"},
    {0x0010, "1xRTT"}, {0x0020, "1xEVDO"}, {0x0040, "CSD"},   {0x0080, "UMTS"},
    {0x0100, "TDMA"},  {0x0200, "IDEN"},   {0x0400, "1xQNC"}, {0x1020, "1xEVDO (Rev-A)"},
};

const Case kTexts[] = {{0x0400, "QNC"}, {0, "gsm"}, {0, "GSM "}, {0, "GSM, GPRS"},
                       {0, "UNKNOWN"},  {0, ""},    {0, nullptr}};

TEST(ProtocolNames, RenderAndMap) {
  for (const Case& row : kLists) EXPECT_STREQ(GetModemProtocolTypeAsString(row.platform), row.text);
  for (const Case& row : kNames) {
    EXPECT_STREQ(GetModemProtocolTypeAsString(row.platform), row.text);
    EXPECT_EQ(MapDeviceTypeToDeviceFlag(row.text), row.platform) << row.text;
  }
  for (const Case& row : kTexts) {
    EXPECT_EQ(MapDeviceTypeToDeviceFlag(row.text), row.platform) << (row.text ? row.text : "null");
  }
}

}  // namespace
