#include "text/character_class.h"

#include <gtest/gtest.h>

TEST(CharacterClass, HoldsExactlyItsCharacters) {
  for (int i = 0; i < 256; ++i) {
    const char c = static_cast<char>(i);
    EXPECT_EQ(ei4::isBlank(c), i == 32 || i == 9) << i;
    EXPECT_EQ(ei4::isLineEnd(c), i == 13 || i == 10) << i;
    EXPECT_EQ(ei4::isWhiteSpace(c), i == 32 || i == 9 || i == 13 || i == 10) << i;
  }
}
