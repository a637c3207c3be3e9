#include "draw/outline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <map>
#include <vector>

namespace {

using ei4::Coverage;
using ei4::Outline;

constexpr tagSIZE kPicture{200, 100};

std::map<long, double> rowOf(Outline& outline, long y, long columns = 100) {
  std::map<long, double> row;
  for (const Coverage& pixel : outline.row(y, columns)) {
    EXPECT_TRUE(row.emplace(pixel.x, pixel.amount).second) << "pixel given twice: " << pixel.x;
  }
  return row;
}

TEST(Outline, OfALineCoversByTheDistance) {
  Outline line = *Outline::line(3, 4, 6, 4);
  EXPECT_LE(line.firstRow(), 3);
  EXPECT_GE(line.lastRow(), 5);
  // Beyond the ends the distance is 1, of which a quarter is left: squared, a sixteenth. Nothing above and left.
  const double beside = 0.0625;
  EXPECT_THAT(rowOf(line, 3), testing::IsEmpty());
  EXPECT_EQ(rowOf(line, 4), (std::map<long, double>{{3, 1.0}, {4, 1.0}, {5, 1.0}, {6, 1.0}, {7, beside}}));
  EXPECT_EQ(rowOf(line, 5), (std::map<long, double>{{3, beside}, {4, beside}, {5, beside}, {6, beside}}));
  EXPECT_THAT(rowOf(line, 6), testing::IsEmpty());
}

TEST(Outline, KeepsToTheColumnsAsked) {
  Outline line = *Outline::line(INT_MIN, 4, INT_MAX, 4);
  const auto row = rowOf(line, 4, 5);
  ASSERT_EQ(row.size(), 5U);
  EXPECT_EQ(row.begin()->first, 0);
  EXPECT_EQ(row.rbegin()->first, 4);
}

TEST(Outline, OfAPolygonIsClosedAndOfAPolylineNot) {
  const std::vector<tagPOINT> corners{{10, 10}, {50, 10}, {50, 40}, {10, 40}};
  Outline polygon = *Outline::polygon(corners, kPicture);
  Outline polyline = *Outline::polyline(corners);
  EXPECT_EQ(rowOf(polygon, 25).at(10), 1.0);
  EXPECT_EQ(rowOf(polyline, 25).count(10), 0U);
  EXPECT_EQ(rowOf(polyline, 25).at(50), 1.0);
}

TEST(Outline, OfAnEllipseMeetsItsAxes) {
  Outline ellipse = *Outline::ellipse(50, 30, 40, 20);
  EXPECT_EQ(rowOf(ellipse, 10).at(50), 1.0);
  const auto middle = rowOf(ellipse, 30);
  EXPECT_EQ(middle.at(10), 1.0);
  EXPECT_EQ(middle.at(90), 1.0);
  EXPECT_EQ(middle.count(50), 0U);
}

TEST(Outline, IsLeftToTheLibraryWhereThatRefusesTheFigure) {
  const std::vector<tagPOINT> two{{10, 10}, {50, 10}};
  const std::vector<tagPOINT> same(4, tagPOINT{10, 10});
  EXPECT_FALSE(Outline::line(5, 5, 5, 5));
  EXPECT_FALSE(Outline::ellipse(50, 50, 0, 5));
  EXPECT_FALSE(Outline::ellipse(50, 50, 5, -1));
  EXPECT_FALSE(Outline::polygon(two, kPicture));
  EXPECT_FALSE(Outline::polygon(same, kPicture));
  EXPECT_FALSE(Outline::polyline(same));
  EXPECT_FALSE(Outline::polyline({two.data(), 1}));
  EXPECT_TRUE(Outline::polyline(two));
}

TEST(Outline, IsLeftToTheLibraryWhenItIsVeryLarge) {
  EXPECT_TRUE(Outline::ellipse(0, 0, 16384, 5));
  EXPECT_FALSE(Outline::ellipse(0, 0, 16385, 5));
  EXPECT_FALSE(Outline::ellipse(0, 0, 5, INT_MAX));
  const std::vector<tagPOINT> far{{10, 10}, {50, LONG_MAX}, {20, 20}};
  EXPECT_FALSE(Outline::polygon(far, kPicture));
}

TEST(Outline, IsLeftToTheLibraryAtThePicturesLeftEdge) {
  const std::vector<tagPOINT> near{{2, 10}, {50, 20}, {30, 40}};
  const std::vector<tagPOINT> tooNear{{1, 10}, {50, 20}, {30, 40}};
  EXPECT_TRUE(Outline::polygon(near, kPicture));
  EXPECT_FALSE(Outline::polygon(tooNear, kPicture));
}

TEST(Outline, IsMadeAllTheSameWhereTheLibraryWouldTakeTooLong) {
  const std::vector<tagPOINT> atTheEdge{{0, 0}, {16000, 8000}, {0, 16000}};
  EXPECT_FALSE(Outline::polygon(atTheEdge, {1000, 1000})) << "a million pixels";
  EXPECT_TRUE(Outline::polygon(atTheEdge, {16000, 16000}));
  std::vector<tagPOINT> jagged;
  jagged.reserve(2000);
  for (int i = 0; i < 2000; ++i) jagged.push_back({i * 7919 % 2000, i * 104729 % 2000});
  EXPECT_FALSE(Outline::polygon(jagged, {200, 200}));
  EXPECT_TRUE(Outline::polygon(jagged, {2000, 2000}));
}

// Peaks that point down and end in the same row; each is the end of two runs.
std::vector<tagPOINT> comb(int peaks) {
  std::vector<tagPOINT> points;
  for (int i = 0; i < peaks; ++i) {
    points.push_back({10 + 4 * i, 10});
    points.push_back({12 + 4 * i, 30});
  }
  points.push_back({10 + 4 * peaks, 10});
  return points;
}

TEST(Outline, IsLeftToTheLibraryWhenManyRunsEndInOneRow) {
  EXPECT_TRUE(Outline::polygon(comb(3), kPicture));
  EXPECT_FALSE(Outline::polygon(comb(4), kPicture));
}

}  // namespace
