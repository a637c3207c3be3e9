#include "annotation/ann_free.h"

#include <climits>
#include <string>
#include <vector>

#include "annotation/paint_fixture.h"

namespace {

using ei4::test::kBlackName;
using ei4::test::kWhiteName;
using ei4::test::kYellowName;
using ei4::test::XY;

class FreePaint : public ei4::test::Painting {
 protected:
  FreePaint() { place(free, CPoint(50, 50)); }

  void vertices(const std::vector<XY>& points) {
    free.m_arrVertices.SetSize(static_cast<int>(points.size()));
    for (std::size_t i = 0; i < points.size(); ++i) {
      free.m_arrVertices[static_cast<int>(i)] = CPoint(points[i].x, points[i].y);
    }
  }
  void stroke(XY from, XY to) { expected.strokeTo(kYellowName, kBlackName, from, to); }
  void label(XY center, const char* text) { expected.label(kYellowName, kBlackName, center, text); }

  CAnnFree free;
};

TEST_F(FreePaint, IsAClosedOutline) {
  const std::vector<XY> corners{{30, 30}, {120, 40}, {90, 110}, {50, 90}};
  vertices(corners);
  expected.shadowedPolygon(kYellowName, kBlackName, corners);
  expectPaints(free);
}

TEST_F(FreePaint, LabelsStandAtTheirPoints) {
  vertices({{30, 30}, {120, 40}, {90, 110}});
  showIndex(free, 5, CPoint(25, 25));
  showValue(free, "12 cm2", CPoint(80, 60));
  expected.shadowedPolygon(kYellowName, kBlackName, {{30, 30}, {120, 40}, {90, 110}});
  label({25, 25}, "5");
  label({80, 60}, "12 cm2");
  // The trace of polygons has no line ends of its own, so the labels' first line follows on.
  expectPaints(free);
}

TEST_F(FreePaint, AlternateStateIsBright) {
  putInAlternateState(free);
  vertices({{30, 30}, {120, 40}, {90, 110}});
  expected.shadowedPolygon(kWhiteName, kBlackName, {{30, 30}, {120, 40}, {90, 110}});
  expectPaints(free);
}

TEST_F(FreePaint, OfTwoVerticesIsALine) {
  vertices({{30, 30}, {120, 40}});
  stroke({30, 30}, {120, 40});
  expectPaints(free);
}

TEST_F(FreePaint, OfFewerVerticesHasLabelsOnly) {
  showIndex(free, 5, CPoint(25, 25));
  label({25, 25}, "5");
  const std::string trace = expected.trace();
  vertices({});
  EXPECT_EQ(traceOf(free), trace);
  vertices({{30, 30}});
  EXPECT_EQ(traceOf(free), trace);
}

TEST_F(FreePaint, OfManyVerticesIsDrawnInLinesBackToTheFirst) {
  std::vector<XY> zigzag;
  zigzag.reserve(2001);
  for (int i = 0; i < 2001; ++i) zigzag.push_back({i % 200, i / 100 + 40 * (i % 2)});
  vertices(zigzag);
  for (std::size_t i = 0; i + 1 < zigzag.size(); ++i) stroke(zigzag[i], zigzag[i + 1]);
  stroke(zigzag.back(), zigzag.front());
  expectPaints(free);
}

TEST_F(FreePaint, OfTwoThousandVerticesIsStillAPolygon) {
  std::vector<XY> corners(2000, XY{30, 30});
  corners[700] = {120, 40};
  corners[1400] = {90, 110};
  vertices(corners);
  EXPECT_EQ(traceOf(free), "Polygon_Polygon_Polygon_\n");
}

TEST_F(FreePaint, OutsideThePictureIsLeftOut) {
  vertices({{-30, 30}, {-120, 40}, {-5, 110}});
  expectPaintsNothing(free);
  vertices({{300, 30}, {210, 40}});
  expectPaintsNothing(free);
}

TEST_F(FreePaint, PartlyOutsideShowsWhatIsInside) {
  const std::vector<XY> corners{{-100, 30}, {120, -70}, {90, 400}};
  vertices(corners);
  expected.shadowedPolygon(kYellowName, kBlackName, corners);
  expectPaints(free);
}

TEST_F(FreePaint, MayReachAnywhere) {
  vertices({{INT_MIN, INT_MIN}, {INT_MAX, 0}, {0, INT_MAX}});
  free.PaintAnnotation(&dc, 1.0);
  vertices({{INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}});
  free.PaintAnnotation(&dc, 1.0);
}

}  // namespace
