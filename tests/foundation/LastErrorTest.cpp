#include <KXWAN/foundation/LastErrorPrivate.h>
#include <gtest/gtest.h>

TEST(LastError, IsClearedByReading) {
  SetModemError(5);
  EXPECT_EQ(GetLastModemError(), 5U);
  EXPECT_EQ(GetLastModemError(), 0U);
  SetModemError(0x100000007);
  EXPECT_EQ(g_dwModemError, 7U);
  EXPECT_FALSE(kxwan::Fail(102));
  EXPECT_EQ(GetLastModemError(), 102U);
}
