#include "annotation/paint_style.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

namespace {

TEST(GetLineWidth, ChangesNothingAtScaleOne) {
  for (const int width : {INT_MIN, -8, -1, 0, 1, 3, INT_MAX}) EXPECT_EQ(GetLineWidth(width, 1.0), width);
}

TEST(GetLineWidth, RoundsHalfUp) {
  EXPECT_EQ(GetLineWidth(3, 1.5), 5);  // 4.5 + 0.5
  EXPECT_EQ(GetLineWidth(3, 1.4), 4);  // 4.2 + 0.5
  EXPECT_EQ(GetLineWidth(10, 2.0), 20);
}

TEST(GetLineWidth, KeepsAVisibleLineVisible) {
  EXPECT_EQ(GetLineWidth(1, 0.2), 1);
  EXPECT_EQ(GetLineWidth(0, 0.2), 0);
  EXPECT_EQ(GetLineWidth(-1, 0.2), 1);  // -0.2 + 0.5 is 0 when truncated
  EXPECT_EQ(GetLineWidth(5, 0.0), 1);
}

TEST(GetLineWidth, TruncatesNegativeWidthsTowardZero) {
  EXPECT_EQ(GetLineWidth(-8, 2.0), -15);  // -16 + 0.5
  EXPECT_EQ(GetLineWidth(-3, 1.5), -4);   // -4.5 + 0.5
  EXPECT_EQ(GetLineWidth(-1, 1.5), -1);   // -1.5 + 0.5
}

TEST(GetLineWidth, EndsAtTheLimitsOfInt) {
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  EXPECT_EQ(GetLineWidth(1, 1e300), INT_MAX);
  EXPECT_EQ(GetLineWidth(-1, 1e300), INT_MIN);
  EXPECT_EQ(GetLineWidth(INT_MAX, 1.5), INT_MAX);
  EXPECT_EQ(GetLineWidth(1, kInfinite), INT_MAX);
  EXPECT_EQ(GetLineWidth(0, kInfinite), 0);  // 0 times infinity is no number
  EXPECT_EQ(GetLineWidth(4, std::nan("")), 1);
}

TEST(Colors, DarkerHalvesEachChannel) {
  EXPECT_EQ(GetDarkerColor(0xFFFFFF), 0x7F7F7FU);
  EXPECT_EQ(GetDarkerColor(0x010203), 0x000101U);
  EXPECT_EQ(GetDarkerColor(0xFF000000), 0U);
}

TEST(Colors, LighterGoesHalfwayToFull) {
  EXPECT_EQ(GetLighterColor(0x000000), 0x7F7F7FU);
  EXPECT_EQ(GetLighterColor(0xFFFFFF), 0xFFFFFFU);
  EXPECT_EQ(GetLighterColor(0x00FE10), 0x7FFE87U);  // 0 + 127, 254 + 0, 16 + 119
  EXPECT_EQ(GetLighterColor(0xAB000000), 0x7F7F7FU);
}

TEST(Colors, BorderIsDarkerOnlyForVeryLightColors) {
  EXPECT_EQ(GetBorderColor(0xFFFFFF), 0x7F7F7FU);
  EXPECT_EQ(GetBorderColor(0x000000), 0x7F7F7FU);
  // 207 + 2 * 208 + 208 = 831 and one more
  EXPECT_EQ(GetBorderColor(0xCFD0D0), GetLighterColor(0xCFD0D0));
  EXPECT_EQ(GetBorderColor(0xD0D0D0), GetDarkerColor(0xD0D0D0));
}

TEST(Colors, ShadowContrastsWithTheColor) {
  EXPECT_EQ(GetShadowColor(0x00FF00), 0U);         // 510
  EXPECT_EQ(GetShadowColor(0x0000FF), 0xFFFFFFU);  // 255
  EXPECT_EQ(GetShadowColor(0xFF0000), 0xFFFFFFU);
  EXPECT_EQ(GetShadowColor(0x5F6060), 0xFFFFFFU);  // 95 + 192 + 96 = 383
  EXPECT_EQ(GetShadowColor(0x606060), 0U);         // 384
}

TEST(Colors, BrightIsTheOppositeOfTheShadow) {
  EXPECT_EQ(GetBrightColor(0x5F6060), 0U);
  EXPECT_EQ(GetBrightColor(0x606060), 0xFFFFFFU);
}

TEST(Colors, BitsAboveTheChannelsCountForNothing) {
  EXPECT_EQ(GetShadowColor(0xFF000000), 0xFFFFFFU);
  EXPECT_EQ(GetBrightColor(0xFF000000), 0U);
  EXPECT_EQ(GetBorderColor(0xFF000000), 0x7F7F7FU);
}

}  // namespace
