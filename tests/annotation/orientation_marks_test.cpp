#include "annotation/orientation_marks.h"

#include <array>
#include <climits>
#include <cstring>
#include <limits>
#include <string>

#include "annotation/paint_fixture.h"

namespace {

using ei4::test::XY;

constexpr const char* kGreenName = "#00ff00";

std::string inverted(const char* code) {
  std::array<char, 8> buffer{};
  std::strncpy(buffer.data(), code, buffer.size() - 1);
  CAnnotationSet::InvPatientOrientationCode(buffer.data());
  return buffer.data();
}

CPoint restricted(CPoint pt, CSize size, int margin) {
  RestrictPoint(pt, size, margin);
  return pt;
}

TEST(InvPatientOrientationCode, ExchangesOppositeDirections) {
  EXPECT_EQ(inverted("LPH"), "RAF");
  EXPECT_EQ(inverted("RAF"), "LPH");
  EXPECT_EQ(inverted("A"), "P");
}

TEST(InvPatientOrientationCode, LeavesEverythingElse) {
  EXPECT_EQ(inverted("X"), "X");
  EXPECT_EQ(inverted(""), "");
  EXPECT_EQ(inverted("aL1"), "aR1");
}

TEST(RestrictPoint, LeavesAPointInside) {
  EXPECT_EQ(restricted(CPoint(10, 39), CSize(100, 50), 10), CPoint(10, 39));
  EXPECT_EQ(restricted(CPoint(89, 10), CSize(100, 50), 10), CPoint(89, 10));
}

TEST(RestrictPoint, MovesEachCoordinateInsideTheMargin) {
  EXPECT_EQ(restricted(CPoint(9, 40), CSize(100, 50), 10), CPoint(10, 39));
  EXPECT_EQ(restricted(CPoint(90, 9), CSize(100, 50), 10), CPoint(89, 10));
  EXPECT_EQ(restricted(CPoint(INT_MIN, INT_MAX), CSize(100, 50), 10), CPoint(10, 39));
}

TEST(RestrictPoint, TakesTheMiddleWhereThereIsNoRoom) {
  EXPECT_EQ(restricted(CPoint(3, 3), CSize(20, 21), 10), CPoint(10, 10));  // 21 leaves the one pixel 10
  EXPECT_EQ(restricted(CPoint(3, 3), CSize(21, 20), 10), CPoint(10, 10));
  EXPECT_EQ(restricted(CPoint(3, 90), CSize(7, 100), 10), CPoint(3, 89));
  EXPECT_EQ(restricted(CPoint(3, 3), CSize(-7, 0), 10), CPoint(-3, 0));
  EXPECT_EQ(restricted(CPoint(3, 3), CSize(100, 100), INT_MAX), CPoint(50, 50));
}

class OrientationMarks : public ei4::test::Painting {
 protected:
  OrientationMarks() {
    std::strcpy(set.m_szOrientRow, "L");
    std::strcpy(set.m_szOrientCol, "FP");
  }
  void mark(XY at, const char* text) { expected.label(kGreenName, "#000000", at, text); }
  void paint(double scale = 1.0) {
    set.PaintOrientation(&dc, CPoint(7, 7), CSize(9, 9), CSize(kWidth, kHeight), scale);
  }
};

TEST_F(OrientationMarks, StandTenPixelsInsideTheEdges) {
  mark({190 - 1, 75}, "L");  // 200 - 10 is not inside the margin any more
  mark({10, 75}, "R");
  mark({100, 140 - 1}, "FP");
  mark({100, 10}, "HA");
  expectPaints([&] { paint(); });
}

TEST_F(OrientationMarks, KeepFurtherInsideAtALargerScale) {
  mark({200 - 25 - 1, 75}, "L");
  mark({25, 75}, "R");
  mark({100, 150 - 25 - 1}, "FP");
  mark({100, 25}, "HA");
  expectPaints([&] { paint(2.45); });  // 24.5 + 0.5
}

struct Turned {
  int orientation;
  std::array<char, 4> edges;  // of row code, its opposite, column code, its opposite
};

class OrientationMarksTurned : public OrientationMarks, public testing::WithParamInterface<Turned> {};

TEST_P(OrientationMarksTurned, StandWhereTheAxesPoint) {
  const auto edge = [](char name) {
    switch (name) {
      case 'r':
        return XY{189, 75};
      case 'l':
        return XY{10, 75};
      case 'b':
        return XY{100, 139};
      default:
        return XY{100, 10};
    }
  };
  const auto& edges = GetParam().edges;
  mark(edge(edges[0]), "L");
  mark(edge(edges[1]), "R");
  mark(edge(edges[2]), "FP");
  mark(edge(edges[3]), "HA");
  set.m_Orientation = static_cast<ORIENTATION>(GetParam().orientation);
  expectPaints([&] { paint(); });
}

INSTANTIATE_TEST_SUITE_P(EveryOrientation, OrientationMarksTurned,
                         testing::Values(Turned{0, {'r', 'l', 'b', 't'}}, Turned{1, {'b', 't', 'l', 'r'}},
                                         Turned{2, {'l', 'r', 't', 'b'}}, Turned{3, {'t', 'b', 'r', 'l'}},
                                         Turned{4, {'l', 'r', 'b', 't'}}, Turned{5, {'t', 'b', 'l', 'r'}},
                                         Turned{6, {'r', 'l', 't', 'b'}}, Turned{7, {'b', 't', 'r', 'l'}},
                                         Turned{8, {'r', 'l', 'b', 't'}}, Turned{-1, {'r', 'l', 'b', 't'}},
                                         Turned{INT_MAX, {'r', 'l', 'b', 't'}}));

// The table agrees with the map of points: a code stands on the side to which its axis leads.
class OrientationMarksAndPoints : public OrientationMarks, public testing::WithParamInterface<int> {};

TEST_P(OrientationMarksAndPoints, AgreeOnWhereTheRowsLead) {
  set.m_Orientation = static_cast<ORIENTATION>(GetParam());
  std::strcpy(set.m_szOrientCol, "");
  const CSize way = set.ImageToDisplay(CPoint(50, 50)) - set.ImageToDisplay(CPoint(40, 50));
  const XY at = way.cx > 0 ? XY{189, 75} : way.cx < 0 ? XY{10, 75} : way.cy > 0 ? XY{100, 139} : XY{100, 10};
  const std::string trace = traceOf([&] { paint(); });
  const std::string drawn =
      "DrawText-draw " + std::to_string(at.x - 3) + " " + std::to_string(at.y + 5) + " \"L\"\n";
  EXPECT_THAT(trace, testing::HasSubstr(drawn));
}

INSTANTIATE_TEST_SUITE_P(EveryOrientation, OrientationMarksAndPoints, testing::Range(0, 8));

TEST_F(OrientationMarks, StandAtTheEdgesOfTheRegionOfInterest) {
  set.m_bRoi = 1;
  set.m_rectRoi = CRect(40, 30, 140, 110);  // centre (90, 70)
  mark({130, 70}, "L");
  mark({50, 70}, "R");
  mark({90, 100}, "FP");
  mark({90, 40}, "HA");
  expectPaints([&] { paint(); });
}

TEST_F(OrientationMarks, StandAroundTheCentreOfASmallRegion) {
  set.m_bRoi = 1;
  set.m_rectRoi = CRect(90, 70, 100, 80);  // centre (95, 75); the edges are nearer to it than the margin
  mark({105, 75}, "L");
  mark({85, 75}, "R");
  mark({95, 85}, "FP");
  mark({95, 65}, "HA");
  expectPaints([&] { paint(); });
}

TEST_F(OrientationMarks, KeepToTheVisiblePartOfAnEnlargedPicture) {
  set.m_ptOffset = CPoint(-300, 20);
  set.m_sizeDst = CSize(400, 300);  // shown: x from 0 to 100, y from 20 to 150; centre (50, 85)
  mark({90, 85}, "L");
  mark({10, 85}, "R");
  mark({50, 139}, "FP");
  mark({50, 30}, "HA");
  expectPaints([&] { paint(); });
}

TEST_F(OrientationMarks, OfAPictureOutOfSightStayInside) {
  // The picture lies from 300 to 500; the crossed rectangle from 300 to 200 has its centre at 250.
  set.m_ptOffset = CPoint(300, 0);
  mark({189, 75}, "L");
  mark({189, 75}, "R");
  mark({189, 139}, "FP");
  mark({189, 10}, "HA");
  expectPaints([&] { paint(); });
}

TEST_F(OrientationMarks, ShareTheMiddleOfATinyPicture) {
  const std::string trace =
      traceOf([&] { set.PaintOrientation(&dc, CPoint(0, 0), CSize(0, 0), CSize(20, 12), 1.0); });
  expected.label(kGreenName, "#000000", {10, 6}, "L");
  expected.label(kGreenName, "#000000", {10, 6}, "R");
  expected.label(kGreenName, "#000000", {10, 6}, "FP");
  expected.label(kGreenName, "#000000", {10, 6}, "HA");
  EXPECT_EQ(trace, expected.trace());
}

TEST_F(OrientationMarks, WithoutCodesShowNothing) {
  set.m_szOrientRow[0] = '\0';
  set.m_szOrientCol[0] = '\0';
  const auto untouched = picture.pixels();
  paint();
  EXPECT_TRUE(picture.pixels() == untouched);
}

TEST_F(OrientationMarks, StayInsideForAnyScaleAndRectangle) {
  set.m_bRoi = 1;
  set.m_rectRoi = CRect(tagRECT{LONG_MIN, LONG_MIN, LONG_MAX, LONG_MAX});
  for (const double scale : {-1e300, -1.0, 0.0, 1e300, std::numeric_limits<double>::quiet_NaN()})
    paint(scale);
  set.PaintOrientation("L", "F", ORIENTATION_AS_STORED, &dc,
                       CRect(tagRECT{LONG_MIN, LONG_MAX, LONG_MAX, LONG_MIN}), CSize(kWidth, kHeight), 1.0);
}

}  // namespace
