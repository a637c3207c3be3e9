#include "types/clamping.h"

#include <gtest/gtest.h>

#include <climits>

TEST(ClampedToInt, KeepsWhatAnIntHoldsAndEndsAtItsLimits) {
  EXPECT_EQ(clampedToInt(0), 0);
  EXPECT_EQ(clampedToInt(INT_MAX), INT_MAX);
  EXPECT_EQ(clampedToInt(INT_MIN), INT_MIN);
  EXPECT_EQ(clampedToInt(INT_MAX + 1L), INT_MAX);
  EXPECT_EQ(clampedToInt(INT_MIN - 1L), INT_MIN);
  EXPECT_EQ(clampedToInt(LONG_MAX), INT_MAX);
  EXPECT_EQ(clampedToInt(LONG_MIN), INT_MIN);
}
