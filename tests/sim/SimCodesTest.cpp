#include <KXWAN/sim/SimCodes.h>
#include <gtest/gtest.h>

#include <vector>

namespace {

struct Case {
  long code;
  std::vector<const char*> texts;
};

const Case kCases[] = {
    {0, {"READY", "SIM PIN2 required", "SIM PUK2", "SIM PUK, not SIM PIN2"}},
    {1004, {"12", "18", "SIM PUK required"}},
    {1005, {"16"}},
    {1008, {"14", "15", "99", "010", "10 ", "101", "", "ready", "sim pin required", "SIM busy"}},
    {1013, {"10", "13", "SIM failure", "sim NOT inserted", "SIM FAILURE, READY"}},
    {1014, {"11", "17", "SIM PIN required", "SIM PUK, not SIM PIN"}},
};

TEST(DecodeCMError, TellsNumbersAndPhrases) {
  for (const Case& row : kCases) {
    for (const char* text : row.texts) EXPECT_EQ(DecodeCMError(text), row.code) << text;
  }
}

}  // namespace
