#include <KXWAN/foundation/CString.h>
#include <gtest/gtest.h>

TEST(HashKey, TakesCharactersAsSignedNumbers) {
  const short wide[] = {-1, 'b', 0};
  EXPECT_EQ(HashKey(""), 0U);
  EXPECT_EQ(HashKey("a"), 97U);
  EXPECT_EQ(HashKey("ab"), 3299U);
  EXPECT_EQ(HashKey("\xFF"), 0xFFFFFFFFU);
  EXPECT_EQ(HashKey("abcdefgh"), 97U * 33 * 33 * 33 * 33 * 33 * 33 * 33 + HashKey("bcdefgh"));
  EXPECT_EQ(HashKey(wide), static_cast<unsigned int>(-33 + 'b'));
}
