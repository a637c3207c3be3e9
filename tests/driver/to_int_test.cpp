#include "driver/to_int.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using ei4::toInt;

TEST(ToInt, TruncatesTowardZero) {
  EXPECT_EQ(toInt(400.7), 400);
  EXPECT_EQ(toInt(-50.9), -50);
  EXPECT_EQ(toInt(-0.9), 0);
}

TEST(ToInt, ReachesBothEndsOfInt) {
  EXPECT_EQ(toInt(2147483647.9), INT_MAX);
  EXPECT_EQ(toInt(-2147483648.9), INT_MIN);
}

TEST(ToInt, AnswersIntMinForWhatDoesNotFit) {
  EXPECT_EQ(toInt(2147483648.0), INT_MIN);
  EXPECT_EQ(toInt(-2147483649.0), INT_MIN);
  EXPECT_EQ(toInt(std::numeric_limits<double>::infinity()), INT_MIN);
  EXPECT_EQ(toInt(-std::numeric_limits<double>::infinity()), INT_MIN);
  EXPECT_EQ(toInt(std::nan("")), INT_MIN);
}
