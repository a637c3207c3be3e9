#include "types/wrapping.h"

#include <gtest/gtest.h>

#include <climits>

TEST(Wrapping, SumsGoOnAtTheOtherEnd) {
  EXPECT_EQ(wrappedSum<int>(INT_MAX, 1), INT_MIN);
  EXPECT_EQ(wrappedSum<int>(INT_MIN, -1), INT_MAX);
  EXPECT_EQ(wrappedSum<unsigned int>(UINT_MAX, 2), 1U);
  EXPECT_EQ(wrappingAdd(LONG_MAX, 2), LONG_MIN + 1);
  EXPECT_EQ(wrappingAdd(INT_MAX, 1), 2147483648L);
}

TEST(Wrapping, DifferencesGoOnAtTheOtherEnd) {
  EXPECT_EQ(wrappedDifference<int>(0, INT_MIN), INT_MIN);
  EXPECT_EQ(wrappedDifference<unsigned int>(0, 1), UINT_MAX);
  EXPECT_EQ(wrappingSubtract(LONG_MIN, 1), LONG_MAX);
  EXPECT_EQ(wrappingSubtract(0, LONG_MIN), LONG_MIN);
}

TEST(Wrapping, ProductsKeepTheirLowestBits) {
  EXPECT_EQ(wrappedProduct<int>(65536, 65537), 65536);
  EXPECT_EQ(wrappedProduct<int>(INT_MIN, -1), INT_MIN);
  EXPECT_EQ(wrappedProduct<int>(32768, 65535), 2147450880);
  EXPECT_EQ(wrappedProduct<unsigned long>(1UL << 63, 3), 1UL << 63);
}

TEST(Wrapping, TheLow32BitsAreSigned) {
  EXPECT_EQ(low32(2147483648L), INT_MIN);
  EXPECT_EQ(low32(-4294967297L), -1);
}
