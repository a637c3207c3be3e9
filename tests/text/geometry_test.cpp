#include "text/geometry.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <random>

#include "types/types.h"

namespace {

constexpr long kTwo32 = 1L << 32;

tagSIZE size(long cx, long cy) { return {cx, cy}; }
tagPOINT point(long x, long y) { return {x, y}; }
ORIENTATION orientation(int value) { return static_cast<ORIENTATION>(value); }

TEST(OrientSizeForw, MapsEachOrientation) {
  const CSize s(3, 5);
  EXPECT_EQ(OrientSizeForw(s, orientation(0)), size(3, 5));
  EXPECT_EQ(OrientSizeForw(s, orientation(1)), size(-5, 3));
  EXPECT_EQ(OrientSizeForw(s, orientation(2)), size(-3, -5));
  EXPECT_EQ(OrientSizeForw(s, orientation(3)), size(5, -3));
  EXPECT_EQ(OrientSizeForw(s, orientation(4)), size(-3, 5));
  EXPECT_EQ(OrientSizeForw(s, orientation(5)), size(-5, -3));
  EXPECT_EQ(OrientSizeForw(s, orientation(6)), size(3, -5));
  EXPECT_EQ(OrientSizeForw(s, orientation(7)), size(5, 3));
}

TEST(OrientSizeBack, MapsEachOrientation) {
  const CSize s(3, 5);
  EXPECT_EQ(OrientSizeBack(s, orientation(0)), size(3, 5));
  EXPECT_EQ(OrientSizeBack(s, orientation(1)), size(5, -3));
  EXPECT_EQ(OrientSizeBack(s, orientation(2)), size(-3, -5));
  EXPECT_EQ(OrientSizeBack(s, orientation(3)), size(-5, 3));
  EXPECT_EQ(OrientSizeBack(s, orientation(4)), size(-3, 5));
  EXPECT_EQ(OrientSizeBack(s, orientation(5)), size(-5, -3));
  EXPECT_EQ(OrientSizeBack(s, orientation(6)), size(3, -5));
  EXPECT_EQ(OrientSizeBack(s, orientation(7)), size(5, 3));
}

TEST(OrientSize, ChangesNothingForOtherValues) {
  for (const int value : {8, 9, 255, -1, INT_MAX, INT_MIN}) {
    EXPECT_EQ(OrientSizeForw(CSize(3, 5), orientation(value)), size(3, 5)) << value;
    EXPECT_EQ(OrientSizeBack(CSize(3, 5), orientation(value)), size(3, 5)) << value;
  }
}

TEST(OrientSize, ComesBackInAll64Bits) {
  for (int value = 0; value < 8; ++value) {
    for (const tagSIZE s : {size(kTwo32 + 3, -7), size(LONG_MIN, LONG_MAX)}) {
      EXPECT_EQ(OrientSizeBack(OrientSizeForw(s, orientation(value)), orientation(value)), s) << value;
    }
  }
  EXPECT_EQ(OrientSizeForw(size(kTwo32, 1), orientation(1)), size(-1, kTwo32));
}

TEST(Src2Dst, ZoomsRoundsAndExchangesSidesForOddOrientations) {
  EXPECT_EQ(Src2Dst(CSize(3, 5), 1.5, 1.0, orientation(1)), size(5, 5));
  for (int value = 0; value < 8; ++value)
    EXPECT_EQ(Src2Dst(CSize(10, 4), 2.0, 0.5, orientation(value)),
              value % 2 == 0 ? size(20, 2) : size(2, 20));
}

TEST(Src2Dst, RoundsByAHalfAndTowardZero) {
  EXPECT_EQ(Src2Dst(CSize(1, 1), 2.49, 2.5, orientation(0)), size(2, 3));
  EXPECT_EQ(Src2Dst(CSize(-1, -1), 2.4, 2.6, orientation(0)), size(-1, -2)) << "-1.9 and -2.1, truncated";
  EXPECT_EQ(Src2Dst(CSize(0, 7), 1e300, 0.0, orientation(0)), size(0, 0));
}

TEST(Src2Dst, IsDefinedForWhatDoesNotFit) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Src2Dst(CSize(1, 1), 2147483647.0, -2147483648.0, orientation(0)), size(INT_MAX, -2147483647L));
  EXPECT_EQ(Src2Dst(CSize(1, 1), 2147483648.0, 1e300, orientation(0)), size(INT_MIN, INT_MIN));
  EXPECT_EQ(Src2Dst(CSize(1, 1), infinity, std::nan(""), orientation(1)), size(INT_MIN, INT_MIN));
  EXPECT_EQ(Src2Dst(size(kTwo32, LONG_MIN), 0.25, 1.0, orientation(0)), size(1 << 30, INT_MIN));
}

// 10 x 8 pixels from (100, 200): the last pixel is (109, 207).
const CRect kRect(100, 200, 110, 208);

bool line(long ax, long ay, long bx, long by) {
  const bool forth = LineInRect(kRect, point(ax, ay), point(bx, by));
  EXPECT_EQ(LineInRect(CRect(110, 208, 100, 200), point(ax, ay), point(bx, by)), forth) << "normalised first";
  return forth;
}

TEST(LineInRect, HoldsWhenAnEndLiesInside) {
  EXPECT_TRUE(line(105, 204, 500, 500));
  EXPECT_TRUE(line(-500, 0, 105, 204));
  EXPECT_TRUE(line(100, 200, 100, 200)) << "the first pixel";
  EXPECT_TRUE(line(109, 207, 109, 207)) << "the last pixel";
  EXPECT_FALSE(line(110, 207, 110, 207)) << "right and bottom lie outside";
  EXPECT_FALSE(line(109, 208, 109, 208));
  EXPECT_FALSE(line(99, 200, 99, 200));
}

TEST(LineInRect, HoldsForALineStraightThrough) {
  EXPECT_TRUE(line(0, 204, 500, 204));
  EXPECT_TRUE(line(500, 207, 0, 207));
  EXPECT_TRUE(line(100, 0, 100, 500));
  EXPECT_TRUE(line(109, 500, 109, 0));
  EXPECT_TRUE(line(0, 202, 500, 205)) << "within the rows, though not level";
}

TEST(LineInRect, FailsForALineBeside) {
  EXPECT_FALSE(line(0, 199, 500, 199));
  EXPECT_FALSE(line(0, 208, 500, 208));
  EXPECT_FALSE(line(99, 0, 99, 500));
  EXPECT_FALSE(line(110, 0, 110, 500));
  EXPECT_FALSE(line(0, 204, 99, 204)) << "ends in front of it";
  EXPECT_FALSE(line(110, 204, 500, 204)) << "begins behind it";
}

TEST(LineInRect, HoldsForASlantedLineThroughTwoSides) {
  EXPECT_TRUE(line(90, 190, 120, 220)) << "down to the right";
  EXPECT_TRUE(line(120, 220, 90, 190));
  EXPECT_TRUE(line(120, 190, 90, 220)) << "down to the left";
  EXPECT_TRUE(line(90, 220, 120, 190));
}

TEST(LineInRect, FailsForASlantedLineThatPassesACorner) {
  EXPECT_FALSE(line(90, 205, 105, 190)) << "upper left: x + y = 295, the corner has 300";
  EXPECT_FALSE(line(105, 190, 120, 205)) << "upper right: x - y = -85, the corner has -91";
  EXPECT_FALSE(line(90, 202, 105, 217)) << "lower left: x - y = -112, the corner has -107";
  EXPECT_FALSE(line(120, 202, 105, 217)) << "lower right: x + y = 322, the corner has 316";
}

TEST(LineInRect, HoldsForASlantedLineThroughACorner) {
  EXPECT_TRUE(line(95, 205, 105, 195)) << "upper left";
  EXPECT_TRUE(line(104, 195, 114, 205)) << "upper right";
  EXPECT_TRUE(line(95, 202, 105, 212)) << "lower left";
  EXPECT_TRUE(line(114, 202, 104, 212)) << "lower right";
}

TEST(LineInRect, RoundsACrossingDownAlongTheLine) {
  // The first line reaches y = 200 at x = 109.5, behind the last column but rounded onto it, and runs away.
  EXPECT_TRUE(line(109, 199, 110, 201));
  EXPECT_FALSE(line(110, 199, 111, 201));
  // Mirrored at the left side the same holds.
  EXPECT_TRUE(line(100, 199, 99, 201));
  EXPECT_FALSE(line(99, 199, 98, 201));
}

TEST(LineInRect, NeedsARectangleWithPixels) {
  EXPECT_FALSE(LineInRect(CRect(10, 10, 10, 20), CPoint(0, 15), CPoint(20, 15)));
  EXPECT_FALSE(LineInRect(CRect(10, 10, 20, 10), CPoint(15, 0), CPoint(15, 20)));
  EXPECT_TRUE(LineInRect(CRect(10, 10, 11, 11), CPoint(0, 0), CPoint(20, 20))) << "one pixel";
}

TEST(LineInRect, ComparesTheLowWordOfACrossing) {
  const CRect rect(0, 0, 100, 100);
  const auto touches = [&](tagPOINT a, tagPOINT b) { return LineInRect(rect, a, b); };
  // Each line passes by at the rectangle's upper left corner, far from all its pixels.
  EXPECT_TRUE(touches(point(-10, -1), point(2 * kTwo32 + 30, 1))) << "y = 0 at x = 2^32 + 10";
  EXPECT_TRUE(touches(point(-1, -10), point(1, 2 * kTwo32 + 30))) << "x = 0 at y = 2^32 + 10";
  EXPECT_TRUE(touches(point(-10, -1), point(2 * kTwo32 + 30, 199))) << "y = 99 at x = 2^32 + 10";
  EXPECT_TRUE(touches(point(-1, -10), point(199, 2 * kTwo32 + 30))) << "x = 99 at y = 2^32 + 10";
  EXPECT_FALSE(touches(point(-10, -1), point(2 * kTwo32 + 1030, 1))) << "y = 0 at x = 2^32 + 510";
  EXPECT_FALSE(touches(point(-1, -10), point(199, 2 * kTwo32 + 1030))) << "x = 99 at y = 2^32 + 510";
}

TEST(LineInRect, IsExactAtTheEndsOfInt) {
  const CRect rect(1000, 1000, 1100, 1100);
  EXPECT_TRUE(LineInRect(rect, CPoint(INT_MIN, INT_MIN), CPoint(INT_MAX, INT_MAX)));
  EXPECT_TRUE(LineInRect(rect, CPoint(INT_MAX, INT_MAX), CPoint(INT_MIN, INT_MIN)));
  EXPECT_FALSE(LineInRect(rect, point(INT_MIN, INT_MIN + 200L), point(INT_MAX - 200L, INT_MAX)));
}

TEST(LineInRect, IsDefinedForAnyNumbers) {
  constexpr long kEnds[] = {LONG_MIN, LONG_MIN + 1, -1, 0, 1, LONG_MAX - 1, LONG_MAX};
  int touching = 0;
  for (const long ax : kEnds)
    for (const long ay : kEnds)
      for (const long bx : kEnds)
        for (const long by : kEnds)
          for (const long edge : kEnds)
            touching += LineInRect(tagRECT{edge, -1, 1, LONG_MAX - 2}, point(ax, ay), point(bx, by)) ? 1 : 0;
  EXPECT_GT(touching, 0);
}

// Does the segment from a to b touch the closed box? By clipping its parameter range in floating point, far
// finer than the pixels here.
bool touchesBox(tagPOINT a, tagPOINT b, double left, double top, double right, double bottom) {
  double from = 0;
  double to = 1;
  const auto clip = [&](double start, double way, double low, double high) {
    if (way == 0) return start >= low && start <= high;
    const double t1 = (low - start) / way;
    const double t2 = (high - start) / way;
    from = std::fmax(from, std::fmin(t1, t2));
    to = std::fmin(to, std::fmax(t1, t2));
    return from <= to + 1e-12;
  };
  const auto x = static_cast<double>(a.x);
  const auto y = static_cast<double>(a.y);
  return clip(x, static_cast<double>(b.x - a.x), left, right) &&
         clip(y, static_cast<double>(b.y - a.y), top, bottom);
}

// The rule in plain steps, for numbers whose products fit.
bool lineInBoxStepByStep(long width, long height, tagPOINT a, tagPOINT b) {
  const long right = width - 1;
  const long bottom = height - 1;
  const auto inside = [&](tagPOINT p) { return p.x >= 0 && p.x < width && p.y >= 0 && p.y < height; };
  if (inside(a) || inside(b)) return true;
  const bool mirrorX = b.x < a.x;
  const bool mirrorY = b.y < a.y;
  const long x1 = mirrorX ? right - a.x : a.x;
  const long x2 = mirrorX ? right - b.x : b.x;
  const long y1 = mirrorY ? bottom - a.y : a.y;
  const long y2 = mirrorY ? bottom - b.y : b.y;
  if (x2 < 0 || x1 > right || y2 < 0 || y1 > bottom) return false;
  if ((0 <= x1 && x2 <= right) || (0 <= y1 && y2 <= bottom)) return true;
  const long dx = x2 - x1;
  const long dy = y2 - y1;
  const long atTop = x1 - (dx * y1) / dy;
  const long atLeft = y1 - (x1 * dy) / dx;
  const long atBottom = x1 + ((bottom - y1) * dx) / dy;
  const long atRight = y1 + ((right - x1) * dy) / dx;
  return (atTop >= 0 && atTop <= right) || (atLeft >= 0 && atLeft <= bottom) ||
         (atBottom >= 0 && atBottom <= right) || (atRight >= 0 && atRight <= bottom);
}

TEST(LineInRect, IsRightWithinAPixel) {
  std::mt19937 random(1);
  std::uniform_int_distribution<long> coordinate(-30, 40);
  constexpr int kLines = 200'000;
  int touching = 0;
  for (int i = 0; i < kLines; ++i) {
    const tagPOINT a = point(coordinate(random), coordinate(random));
    const tagPOINT b = point(coordinate(random), coordinate(random));
    const bool answer = LineInRect(CRect(0, 0, 10, 8), a, b);
    touching += answer ? 1 : 0;
    ASSERT_EQ(answer, lineInBoxStepByStep(10, 8, a, b)) << a.x << ' ' << a.y << " to " << b.x << ' ' << b.y;
    const bool certain = touchesBox(a, b, 0, 0, 9, 7);
    const bool possible = touchesBox(a, b, -1, -1, 10, 8);
    ASSERT_TRUE(answer ? possible : !certain) << a.x << ' ' << a.y << " to " << b.x << ' ' << b.y;
  }
  EXPECT_GT(touching, kLines / 20);
  EXPECT_LT(touching, kLines / 2);
}

bool oval(long x, long y, long a, long b) {
  const bool answer = OvalInRect(kRect, point(x, y), size(a, b));
  EXPECT_EQ(OvalInRect(CRect(110, 208, 100, 200), point(x, y), size(a, b)), answer) << "normalised first";
  return answer;
}

TEST(OvalInRect, HoldsWithTheCenterInside) {
  EXPECT_TRUE(oval(105, 204, 1, 1));
  EXPECT_TRUE(oval(100, 200, 0, 0)) << "an ellipse that is a point";
  EXPECT_FALSE(oval(110, 204, 0, 0));
}

TEST(OvalInRect, ReachesASideByItsHalfAxis) {
  EXPECT_TRUE(oval(95, 204, 5, 1));
  EXPECT_FALSE(oval(94, 204, 5, 9));
  EXPECT_TRUE(oval(114, 204, 5, 1)) << "counted from the last pixel";
  EXPECT_FALSE(oval(115, 204, 5, 9));
  EXPECT_TRUE(oval(105, 197, 1, 3));
  EXPECT_FALSE(oval(105, 196, 9, 3));
  EXPECT_TRUE(oval(105, 210, 1, 3));
  EXPECT_FALSE(oval(105, 211, 9, 3));
}

TEST(OvalInRect, ReachesACornerAlongItsOutline) {
  // Half-axes 10 and 5 with 36/100 + 16/25 = 1 at (6, 4), and 64/100 + 9/25 = 1 at (8, 3).
  EXPECT_TRUE(oval(94, 196, 10, 5)) << "upper left, exactly on the outline";
  EXPECT_FALSE(oval(93, 196, 10, 5));
  EXPECT_FALSE(oval(94, 195, 10, 5));
  EXPECT_TRUE(oval(117, 197, 10, 5)) << "upper right";
  EXPECT_FALSE(oval(118, 197, 10, 5));
  EXPECT_TRUE(oval(92, 210, 10, 5)) << "lower left";
  EXPECT_FALSE(oval(92, 211, 10, 5));
  EXPECT_TRUE(oval(115, 211, 10, 5)) << "lower right";
  EXPECT_FALSE(oval(116, 211, 10, 5));
}

TEST(OvalInRect, HoldsAroundTheWholeRectangle) { EXPECT_TRUE(oval(60, 204, 1000, 1000)); }

TEST(OvalInRect, FailsForNegativeHalfAxesBesideTheMiddle) {
  EXPECT_TRUE(oval(105, 204, -3, -3)) << "they shrink the rectangle that must hold the center";
  EXPECT_FALSE(oval(101, 204, -3, -3));
}

TEST(OvalInRect, NeedsARectangleWithPixels) {
  EXPECT_FALSE(OvalInRect(CRect(10, 10, 10, 20), CPoint(10, 15), CSize(5, 5)));
  EXPECT_FALSE(OvalInRect(CRect(10, 10, 20, 10), CPoint(15, 10), CSize(5, 5)));
}

TEST(OvalInRect, IsDefinedForAnyNumbers) {
  constexpr long kEnds[] = {LONG_MIN, LONG_MIN + 1, -1, 0, 1, LONG_MAX - 1, LONG_MAX};
  int touching = 0;
  for (const long x : kEnds)
    for (const long y : kEnds)
      for (const long a : kEnds)
        for (const long b : kEnds)
          for (const long edge : kEnds)
            touching += OvalInRect(tagRECT{edge, -1, 1, LONG_MAX - 2}, point(x, y), size(a, b)) ? 1 : 0;
  EXPECT_GT(touching, 0);
}

}  // namespace
