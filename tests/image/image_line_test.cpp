#include "image/image_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <climits>

#include "image/pixel.h"

namespace {

using testing::ElementsAre;

constexpr int kWidth = 4;
constexpr std::array<int, 8> kPixels = {1, 2, 3, 4, 5, 6, 7, 8};  // 4 x 2
const CSize kSize(kWidth, 2);

class ImageLine : public testing::Test {
 protected:
  const int* Get(int x, int y, int count) {
    return GetImageLine<int>(kPixels.data(), kSize, x, y, count, m_scratch.data());
  }

  std::array<int, 6> m_scratch = {-1, -1, -1, -1, -1, -1};
};

TEST_F(ImageLine, PointsIntoThePictureForASpanInside) {
  EXPECT_EQ(Get(0, 0, 4), &kPixels[0]);
  EXPECT_EQ(Get(1, 1, 3), &kPixels[5]);
  EXPECT_EQ(Get(3, 1, 1), &kPixels[7]);
  EXPECT_THAT(m_scratch, testing::Each(-1)) << "nothing is copied";
}

TEST_F(ImageLine, GivesZerosForRowsOutside) {
  for (const int y : {-1, 2, INT_MIN, INT_MAX}) {
    m_scratch.fill(-1);
    EXPECT_EQ(Get(1, y, 3), m_scratch.data()) << "a span inside";
    EXPECT_THAT(m_scratch, ElementsAre(0, 0, 0, -1, -1, -1));
    EXPECT_EQ(Get(-1, y, 4), m_scratch.data()) << "a span across the edge";
    EXPECT_THAT(m_scratch, ElementsAre(0, 0, 0, 0, -1, -1));
  }
}

TEST_F(ImageLine, PadsOnTheLeft) {
  EXPECT_EQ(Get(-2, 1, 4), m_scratch.data());
  EXPECT_THAT(m_scratch, ElementsAre(0, 0, 5, 6, -1, -1));
}

TEST_F(ImageLine, PadsOnTheRight) {
  EXPECT_EQ(Get(2, 0, 5), m_scratch.data());
  EXPECT_THAT(m_scratch, ElementsAre(3, 4, 0, 0, 0, -1));
}

TEST_F(ImageLine, PadsOnBothSides) {
  EXPECT_EQ(Get(-1, 0, 6), m_scratch.data());
  EXPECT_THAT(m_scratch, ElementsAre(0, 1, 2, 3, 4, 0));
}

TEST_F(ImageLine, CopiesNoMoreThanFitsBehindThePadding) {
  // Five from column 0 on would be cut to the width of four, but only three places are left.
  EXPECT_EQ(Get(-2, 0, 5), m_scratch.data());
  EXPECT_THAT(m_scratch, ElementsAre(0, 0, 1, 2, 3, -1));
}

TEST_F(ImageLine, CopiesNothingFromSpansWhollyOutside) {
  for (const int x : {-3, 4, 100, INT_MIN, INT_MAX}) {
    m_scratch.fill(-1);
    EXPECT_EQ(Get(x, 0, 3), m_scratch.data());
    EXPECT_THAT(m_scratch, ElementsAre(0, 0, 0, -1, -1, -1)) << x;
  }
}

TEST_F(ImageLine, WritesNothingForCountsBelowOne) {
  for (const int count : {0, -1, INT_MIN}) {
    Get(-1, 0, count);
    Get(9, 0, count);
    Get(1, 7, count);
    EXPECT_THAT(m_scratch, testing::Each(-1));
  }
}

TEST_F(ImageLine, TakesAPictureWithoutPixels) {
  EXPECT_EQ(GetImageLine<int>(nullptr, CSize(0, 0), 0, 0, 2, m_scratch.data()), m_scratch.data());
  EXPECT_THAT(m_scratch, ElementsAre(0, 0, -1, -1, -1, -1));
  EXPECT_EQ(GetImageLine<int>(nullptr, CSize(0, 5), -1, 1, 3, m_scratch.data()), m_scratch.data());
  EXPECT_THAT(m_scratch, ElementsAre(0, 0, 0, -1, -1, -1));
}

TEST(ImageLineOfPixels, CountsInPixels) {
  const CPixelC08 pixels[] = {{1, 2, 3}, {4, 5, 6}};
  CPixelC08 scratch[5];
  const CPixelC08* line = GetImageLine<CPixelC08>(pixels, CSize(2, 1), -2, 0, 5, scratch);
  const int greens[] = {line[0].green, line[1].green, line[2].green, line[3].green, line[4].green};
  EXPECT_THAT(greens, ElementsAre(0, 0, 2, 5, 0));
}

}  // namespace
