#include "annotation/display_geometry.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

namespace {

TEST(Truncated, GoesTowardZero) {
  EXPECT_EQ(Truncated(2.9), 2);
  EXPECT_EQ(Truncated(-2.9), -2);
  EXPECT_EQ(Truncated(-0.9), 0);
}

TEST(Truncated, EndsAtTheLimitsOfInt) {
  EXPECT_EQ(Truncated(1e300), INT_MAX);
  EXPECT_EQ(Truncated(-std::numeric_limits<double>::infinity()), INT_MIN);
  EXPECT_EQ(Truncated(std::nan("")), 0);
}

TEST(Moved, EndsAtTheLimitsOfInt) {
  EXPECT_EQ(Moved(CPoint(3, 4), 1, -2), CPoint(4, 2));
  EXPECT_EQ(Moved(CPoint(INT_MAX, INT_MIN), 1, -1), CPoint(INT_MAX, INT_MIN));
  EXPECT_EQ(Moved(CPoint(tagPOINT{LONG_MAX, LONG_MIN}), CSize(tagSIZE{LONG_MAX, LONG_MIN})),
            CPoint(INT_MAX, INT_MIN));
}

TEST(MiddleOf, TruncatesHalvesTowardZero) {
  EXPECT_EQ(MiddleOf(CPoint(1, -1), CPoint(2, -2)), CPoint(1, -1));
  EXPECT_EQ(MiddleOf(CPoint(INT_MAX, INT_MIN), CPoint(INT_MAX, INT_MIN)), CPoint(INT_MAX, INT_MIN));
}

TEST(Way, PointsLieAtTruncatedDistancesFromTheStart) {
  const Way way(CPoint(10, 10), CPoint(3, 24));  // (-7, 14)
  EXPECT_EQ(way.PointAt(0, 4), CPoint(10, 10));
  EXPECT_EQ(way.PointAt(1, 4), CPoint(9, 13));  // -1.75, 3.5
  EXPECT_EQ(way.PointAt(4, 4), CPoint(3, 24));
}

TEST(Way, MeasuresWhatNoIntCanHold) {
  const Way way(CPoint(INT_MIN, 0), CPoint(INT_MAX, 0));
  EXPECT_EQ(way.DX(), 4294967295.0);
  EXPECT_EQ(way.Length(), 4294967295.0);
}

TEST(Way, FindsWhereItCrossesThePicture) {
  const Way::Stretch across = Way(CPoint(-100, 20), CPoint(300, 20)).StretchNear(CSize(100, 50), 0);
  EXPECT_TRUE(across.any);
  EXPECT_DOUBLE_EQ(across.from, 0.25);
  EXPECT_DOUBLE_EQ(across.to, 0.5);

  const Way::Stretch upward = Way(CPoint(50, 100), CPoint(50, -100)).StretchNear(CSize(100, 50), 10);
  EXPECT_TRUE(upward.any);
  EXPECT_DOUBLE_EQ(upward.from, 0.2);  // y = 60
  EXPECT_DOUBLE_EQ(upward.to, 0.55);   // y = -10
}

TEST(Way, FindsNothingBesideThePicture) {
  EXPECT_FALSE(Way(CPoint(0, 61), CPoint(100, 61)).StretchNear(CSize(100, 50), 10).any);
  EXPECT_FALSE(Way(CPoint(-40, 10), CPoint(10, -40)).StretchNear(CSize(100, 50), 10).any);  // past the corner
  EXPECT_FALSE(Way(CPoint(-20, 0), CPoint(-11, 0)).StretchNear(CSize(100, 50), 10).any);
  EXPECT_FALSE(Way(CPoint(-20, 5), CPoint(-20, 5)).StretchNear(CSize(100, 50), 10).any);
}

TEST(Way, ThatIsAPointLiesInsideWhole) {
  const Way::Stretch whole = Way(CPoint(5, 5), CPoint(5, 5)).StretchNear(CSize(100, 50), 0);
  EXPECT_TRUE(whole.any);
  EXPECT_EQ(whole.from, 0);
  EXPECT_EQ(whole.to, 1);
}

TEST(MayShow, AllowsForStrokesBesideThePicture) {
  const CSize size(100, 50);
  EXPECT_TRUE(MayShow(CRect(10, 10, 20, 20), size));
  EXPECT_TRUE(MayShow(CRect(-20, 0, -4, 10), size));
  EXPECT_FALSE(MayShow(CRect(-20, 0, -5, 10), size));
  EXPECT_TRUE(MayShow(CRect(104, 0, 120, 10), size));
  EXPECT_FALSE(MayShow(CRect(105, 0, 120, 10), size));
  EXPECT_FALSE(MayShow(CRect(0, -20, 10, -5), size));
  EXPECT_FALSE(MayShow(CRect(0, 55, 10, 60), size));
}

}  // namespace
