#include <KXWAN/sim/EquipmentError.h>
#include <gtest/gtest.h>

#include <string>

namespace {

struct Case {
  const char* text;
  long code;
};

const Case kCases[] = {
    {"10", 1013},
    {"11", 1014},
    {"12", 1004},
    {"13", 1013},
    {"14", 1008},
    {"15", 1008},
    {"16", 1005},
    {"17", 1014},
    {"18", 1004},
    {"99", 1008},
    {"010", 1008},
    {"10 ", 1008},
    {"101", 1008},
    {"", 1008},
    {"SIM failure", 1013},
    {"sim NOT inserted", 1013},
    {"+CPIN: READY", 0},
    {"ready", 1008},
    {"SIM PIN2 required", 0},
    {"SIM PUK2 required", 0},
    {"SIM PIN required", 1014},
    {"sim pin required", 1008},
    {"SIM PUK required", 1004},
    {"SIM busy", 1008},
    {"SIM PUK, not SIM PIN2", 0},
    {"SIM PUK, not SIM PIN", 1014},
};

TEST(DecodeCMError, TellsNumbersAndPhrases) {
  for (const Case& row : kCases) {
    EXPECT_EQ(DecodeCMError(row.text), row.code) << row.text;
  }
  EXPECT_EQ(DecodeCMError(std::string(10000, '1').c_str()), 1008);
}

}  // namespace
