#include "driver/picture_limit.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

using ei4::hasAtMost;
using ei4::inputMayClaim;

CSize sizeOf(long width, long height) { return tagSIZE{width, height}; }

}  // namespace

TEST(PictureLimit, CountsPixels) {
  EXPECT_TRUE(hasAtMost(sizeOf(3, 4), 12));
  EXPECT_FALSE(hasAtMost(sizeOf(3, 4), 11));
  EXPECT_FALSE(hasAtMost(sizeOf(4, 3), 11));
  EXPECT_TRUE(hasAtMost(sizeOf(0, INT64_MAX), 0));
  EXPECT_TRUE(hasAtMost(sizeOf(INT64_MAX, 0), 0));
  EXPECT_FALSE(hasAtMost(sizeOf(1, 1), 0));
}

TEST(PictureLimit, TakesSidesWhoseProductOverflows) {
  EXPECT_FALSE(hasAtMost(sizeOf(INT64_MAX, INT64_MAX), INT64_MAX));
  EXPECT_TRUE(hasAtMost(sizeOf(INT64_MAX, 1), INT64_MAX));
  EXPECT_FALSE(hasAtMost(sizeOf(1L << 32, 1L << 32), INT64_MAX));  // 0 in the low 64 bits
}

TEST(PictureLimit, HasNoPictureOfANegativeSide) {
  EXPECT_FALSE(hasAtMost(sizeOf(-1, 1), INT64_MAX));
  EXPECT_FALSE(hasAtMost(sizeOf(1, -1), INT64_MAX));
  EXPECT_FALSE(hasAtMost(sizeOf(-1, -1), INT64_MAX));
}

TEST(PictureLimit, Takes64MegapixelsFromAnyInput) {
  EXPECT_TRUE(inputMayClaim(sizeOf(8192, 8192), 0));
  EXPECT_FALSE(inputMayClaim(sizeOf(8192, 8193), 0));
}

TEST(PictureLimit, WantsAByteForEach256PixelsBeyondThat) {
  const CSize size = sizeOf(65535, 65535);  // as many as a header can claim
  constexpr std::int64_t kBytes = (65535L * 65535 + 255) / 256;
  EXPECT_TRUE(inputMayClaim(size, kBytes));
  EXPECT_FALSE(inputMayClaim(size, kBytes - 1));
  EXPECT_FALSE(inputMayClaim(size, 50));
}

TEST(PictureLimit, TakesAnyLength) {
  EXPECT_TRUE(inputMayClaim(sizeOf(1L << 31, 1L << 31), INT64_MAX));
  EXPECT_FALSE(inputMayClaim(sizeOf(INT64_MAX, 2), INT64_MAX));
}
