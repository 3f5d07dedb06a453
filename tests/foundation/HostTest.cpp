#include <KXWAN/foundation/Host.h>
#include <gtest/gtest.h>

TEST(Host, GivesItsFixedAnswers) {
  EXPECT_EQ(GetCustomSetting("MaxBatteryStrength", 0), 0);
  EXPECT_EQ(GetCustomSetting(nullptr, -7), -7);
  EXPECT_EQ(AfxMessageBox("text"), 1);
}
