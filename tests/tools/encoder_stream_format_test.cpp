#include "encoder/stream_format.h"

#include <gtest/gtest.h>

namespace {

using namespace ei4::tools;

int fieldBits(Magic magic, int width, int height, int order, ChunkKind kind) {
  return lengthFieldBits({magic, 1, 8, width, height}, {0, order, kind});
}

TEST(NaturalLevels, LeaveEightSamplesASide) {
  EXPECT_EQ(naturalLevels(1, 1), 0);
  EXPECT_EQ(naturalLevels(15, 4000), 0);
  EXPECT_EQ(naturalLevels(16, 16), 1);
  EXPECT_EQ(naturalLevels(100, 100), 3);
  EXPECT_EQ(naturalLevels(512, 512), 6);
  EXPECT_EQ(naturalLevels(2047, 2048), 7);
  EXPECT_EQ(naturalLevels(2048, 2500), 8);
  EXPECT_EQ(naturalLevels(65535, 65535), 8);
}

// 64 x 64 = 4096 pixels: 8193 has its highest bit at 13. One and a half times that: 12289, 13 again.
TEST(LengthField, NarrowsByTwoBitsPerOrder) {
  EXPECT_EQ(fieldBits(Magic::GW40, 64, 64, 0, ChunkKind::Significance), 14);
  EXPECT_EQ(fieldBits(Magic::GW40, 64, 64, 3, ChunkKind::Significance), 8);
  EXPECT_EQ(fieldBits(Magic::GW40, 64, 64, 3, ChunkKind::Refinement), 8);
  EXPECT_EQ(fieldBits(Magic::GW41, 64, 64, 3, ChunkKind::Significance), 8);
  EXPECT_EQ(fieldBits(Magic::GW41, 64, 64, 3, ChunkKind::Refinement), 7);
}

// 1023 * 1025 = 2^20 - 1: twice that and one is 2^21 - 1, which single precision would round up to 2^21.
TEST(LengthField, IsReckonedInExactIntegers) {
  EXPECT_EQ(fieldBits(Magic::GW40, 1023, 1025, 0, ChunkKind::Significance), 21);
  EXPECT_EQ(fieldBits(Magic::GW40, 1024, 1024, 0, ChunkKind::Significance), 22);
}

// 1 x 1: 3, highest bit 1; half of one pixel is cut off. 1 x 3: 7 against 4 * 2 + 1 = 9.
TEST(LengthField, OfGW41CountsHalfAsManyPixelsMore) {
  EXPECT_EQ(fieldBits(Magic::GW41, 1, 1, 0, ChunkKind::Significance), 2);
  EXPECT_EQ(fieldBits(Magic::GW40, 1, 3, 0, ChunkKind::Significance), 3);
  EXPECT_EQ(fieldBits(Magic::GW41, 1, 3, 0, ChunkKind::Significance), 4);
}

TEST(LengthField, HoldsTheLargestPictures) {
  EXPECT_EQ(fieldBits(Magic::GW41, 65535, 65535, 0, ChunkKind::Significance), 34);
}

TEST(LengthField, CanVanish) { EXPECT_LE(fieldBits(Magic::GW41, 16, 1, 4, ChunkKind::Refinement), 0); }

TEST(ShortCoefficients, EndAtTwelveBitsOfGrey) {
  EXPECT_TRUE(usesShortCoefficients({Magic::GW41, 1, 8, 1, 1}));
  EXPECT_TRUE(usesShortCoefficients({Magic::GW41, 3, 8, 1, 1}));
  EXPECT_TRUE(usesShortCoefficients({Magic::GW41, 2, 11, 1, 1}));
  EXPECT_FALSE(usesShortCoefficients({Magic::GW41, 2, 12, 1, 1}));
}

}  // namespace
