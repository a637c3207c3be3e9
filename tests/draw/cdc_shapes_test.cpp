#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "draw/cdc.h"
#include "drawing_fixture.h"

namespace {

class Shapes : public ei4::test::Drawing {
 protected:
  void SetUp() override {
    dc.SelectObject(&red);
    dc.SelectObject(static_cast<CBrush*>(nullptr));
  }

  CPen red{0, 1, 0x0000FF};
  CBrush blue{0xFF0000};
  const std::vector<tagPOINT> star{{80, 5}, {120, 110}, {10, 40}, {150, 40}, {40, 110}};
};

TEST_F(Shapes, LineGoesFromThePositionInThePensColor) {
  dc.MoveTo(3, 4);
  EXPECT_EQ(dc.LineTo(10, 4), 1);
  expected.draw("line 3 4 10 4", "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, LineMakesItsEndThePosition) {
  dc.MoveTo(3, 4);
  dc.LineTo(10, 4);
  dc.LineTo(tagPOINT{90, 77});
  expected.draw("line 3 4 10 4", "#ff0000", "none");
  expected.draw("line 10 4 90 77", "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, LineStartsAtTheOriginInANewContext) {
  dc.LineTo(40, 30);
  expected.draw("line 0 0 40 30", "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, LineOfANewContextIsBlack) {
  CDC another(picture.image(), picture.info());
  another.LineTo(40, 30);
  expected.draw("line 0 0 40 30", "#000000", "none");
  expectSame();
}

TEST_F(Shapes, LineKeepsTheLow32BitsOfWidePoints) {
  dc.MoveTo(tagPOINT{(1L << 32) + 20, 10});
  dc.LineTo(tagPOINT{60, (5L << 32) + 50});
  expected.draw("line 20 10 60 50", "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, LineIsCutOffAtThePicturesEdges) {
  dc.MoveTo(INT_MIN, 30);
  dc.LineTo(INT_MAX, 80);
  dc.MoveTo(-20, -40);
  dc.LineTo(400, 300);
  expected.draw("line -2147483648 30 2147483647 80", "#ff0000", "none");
  expected.draw("line -20 -40 400 300", "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, LineIsTracedAsAPrimitiveAndThenAsACall) {
  dc.MoveTo(3, 4);
  EXPECT_EQ(traceOf([this] { dc.LineTo(10, 4); }), "Draing Primitive: 'line 3 4 10 4'\nLineTo 10 4\n");
  EXPECT_EQ(traceOf([this] {
              dc.LineTo(tagPOINT{(1L << 32) + 1, -2});
            }),
            "Draing Primitive: 'line 10 4 1 -2'\nLineTo 1 -2\n");
}

TEST_F(Shapes, PolylineGoesThroughItsPoints) {
  EXPECT_EQ(dc.Polyline(star.data(), 4), 1);
  expected.draw("polyline 80 5 120 110 10 40 150 40 ", "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, PolylineIgnoresTheBrush) {
  dc.SelectObject(&blue);
  dc.Polyline(star.data(), 5);
  expected.draw("polyline 80 5 120 110 10 40 150 40 40 110 ", "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, PolylineLeavesThePosition) {
  dc.MoveTo(7, 7);
  dc.Polyline(star.data(), 2);
  dc.LineTo(30, 7);
  expected.draw("polyline 80 5 120 110 ", "#ff0000", "none");
  expected.draw("line 7 7 30 7", "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, PolylineTakes64BitPoints) {
  const tagPOINT points[] = {{-5000000000, 60}, {5000000000, 61}, {5000000000, LONG_MIN}};
  dc.Polyline(points, 3);
  expected.draw("polyline -5000000000 60 5000000000 61 5000000000 -9223372036854775808 ", "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, PolylineIsTracedAsAPrimitive) {
  EXPECT_EQ(traceOf([this] { dc.Polyline(star.data(), 2); }), "Draing Primitive: 'polyline 80 5 120 110 '\n");
}

TEST_F(Shapes, PolylineOfNoPointsIsTracedAllTheSame) {
  for (const int n : {0, -1, INT_MIN}) {
    EXPECT_EQ(traceOf([&] { dc.Polyline(nullptr, n); }), "Draing Primitive: 'polyline '\n");
  }
  expected.draw("polyline ", "#ff0000", "none");
  EXPECT_EQ(picture.state(), expected.state());
  expectUntouched();
}

TEST_F(Shapes, PointListsOfNoPointsDrawNothing) {
  dc.SelectObject(&blue);
  for (const int n : {0, -1, INT_MIN}) {
    EXPECT_EQ(dc.Polyline(nullptr, n), 1);
    EXPECT_EQ(dc.Polygon(nullptr, n), 1);
    EXPECT_EQ(dc.Polygon_(nullptr, n, "#ff0000", 1), 1);
  }
  expectUntouched();
}

TEST_F(Shapes, PolygonIsAnOutlineWithoutABrush) {
  EXPECT_EQ(dc.Polygon(star.data(), 5), 1);
  expected.draw("polygon 80 5 120 110 10 40 150 40 40 110 ", "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, PolygonIsFilledWithTheBrushAndThenOutlined) {
  dc.SelectObject(&blue);
  dc.Polygon(star.data(), 5);
  expected.draw("polygon 80 5 120 110 10 40 150 40 40 110 ", "#0000ff", "#0000ff");
  expected.draw("polygon 80 5 120 110 10 40 150 40 40 110 ", "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, PolygonOfANewContextIsFilledBlack) {
  CDC another(picture.image(), picture.info());
  another.Polygon(star.data(), 5);
  expected.draw("polygon 80 5 120 110 10 40 150 40 40 110 ", "#000000", "#000000");
  expected.draw("polygon 80 5 120 110 10 40 150 40 40 110 ", "#000000", "none");
  expectSame();
}

TEST_F(Shapes, PolygonInAColorOfItsOwn) {
  EXPECT_EQ(dc.Polygon_(star.data(), 3, "#00ff80", 0), 1);
  expected.draw("polygon 80 5 120 110 10 40 ", "#00ff80", "none");
  EXPECT_EQ(dc.Polygon_(star.data() + 2, 3, "#00ff80", 1), 1);
  expected.draw("polygon 10 40 150 40 40 110 ", "#00ff80", "#00ff80");
  expectSame();
}

TEST_F(Shapes, PolygonOfTwoPointsIsRefusedByTheLibrary) {
  EXPECT_EQ(dc.Polygon(star.data(), 2), 1);
  expectUntouched();
}

TEST_F(Shapes, PolygonIsTracedWithoutALineEnd) {
  EXPECT_EQ(traceOf([this] { dc.Polygon(star.data(), 5); }), "Polygon_");
  dc.SelectObject(&blue);
  EXPECT_EQ(traceOf([this] { dc.Polygon(star.data(), 5); }), "Polygon_Polygon_");
}

TEST_F(Shapes, RoundRectCutsTwoPixelsOffEachCorner) {
  const tagRECT rect{20, 30, 100, 90};
  EXPECT_EQ(dc.RoundRect(&rect, CPoint(25, 9)), 1);
  expected.draw("polygon 100 32 98 30 22 30 20 32 20 88 22 90 98 90 100 88 ", "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, RoundRectIsFilledLikeAPolygon) {
  dc.SelectObject(&blue);
  const tagRECT rect{20, 30, 100, 90};
  dc.RoundRect(&rect, CPoint(0, 0));
  expected.draw("polygon 100 32 98 30 22 30 20 32 20 88 22 90 98 90 100 88 ", "#0000ff", "#0000ff");
  expected.draw("polygon 100 32 98 30 22 30 20 32 20 88 22 90 98 90 100 88 ", "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, RoundRectTracesItsCornerSize) {
  const tagRECT rect{20, -30, 5000000000, 90};
  EXPECT_EQ(traceOf([&] { dc.RoundRect(&rect, CPoint(25, -9)); }),
            "RoundRect 20 -30 5000000000 90, 25 -9\nPolygon_");
}

TEST_F(Shapes, RoundRectWrapsAtTheEndsOfItsNumbers) {
  const tagRECT rect{LONG_MAX, LONG_MAX, LONG_MIN, LONG_MIN};
  EXPECT_EQ(dc.RoundRect(&rect, CPoint(0, 0)), 1);
}

TEST_F(Shapes, EllipseHalvesItsRectangleTowardZero) {
  dc.Ellipse(0, 0, 11, 7, 0.0);
  expected.draw("ellipse 5 3 5 3 0 360", "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, EllipseHalvesNegativeNumbersTowardZeroToo) {
  dc.Ellipse(-3, -5, 40, 20, 0.0);  // sums 37 and 15, differences 43 and 25
  expected.draw("ellipse 18 7 21 12 0 360", "#ff0000", "none");
  dc.Ellipse(-50, -41, 15, 30, 0.0);  // sums -35 and -11, differences 65 and 71
  expected.draw("ellipse -17 -5 32 35 0 360", "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, EllipseIsFilledWithTheBrushInOneGo) {
  dc.SelectObject(&blue);
  EXPECT_EQ(dc.Ellipse(20, 30, 120, 90, 0.0), 1);
  expected.draw("ellipse 70 60 50 30 0 360", "#ff0000", "#0000ff");
  expectSame();
}

TEST_F(Shapes, EllipseOfARectangleKeepsLow32Bits) {
  const tagRECT rect{20, (1L << 32) + 30, 120, 90};
  EXPECT_EQ(dc.Ellipse(&rect, 0.0), 1);
  expected.draw("ellipse 70 60 50 30 0 360", "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, EllipseIsTurnedAboutItsCentre) {
  const tagRECT rect{20, 30, 120, 90};
  dc.Ellipse(&rect, 30.5);
  expected.draw(
      "push graphic-context translate 70,60 rotate 30.5 ellipse 0,0,50,30,0,360 pop graphic-context",
      "#ff0000", "none");
  expectSame();
}

TEST_F(Shapes, EllipseWithANegativeOrNoRadiusIsRefusedByTheLibrary) {
  dc.Ellipse(60, 20, 30, 50, 0.0);
  dc.Ellipse(60, 20, 60, 50, 0.0);
  expectUntouched();
}

TEST_F(Shapes, EllipseWrapsAtTheEndsOfItsNumbers) {
  // The sums are -2, the difference -1: a centre of -1 and a radius of 0.
  EXPECT_EQ(dc.Ellipse(INT_MAX, INT_MAX, INT_MAX, INT_MAX, 0.0), 1);
  EXPECT_EQ(dc.Ellipse(INT_MIN, INT_MIN, INT_MAX, INT_MAX, 0.0), 1);
  expectUntouched();
}

TEST_F(Shapes, EllipseIsTracedBeforeItIsDrawn) {
  EXPECT_EQ(traceOf([this] { dc.Ellipse(0, 0, 11, 7, 0.0); }),
            "Ellipse 0 0 11 7\nPrimitive: ellipse 5 3 5 3 0 360\nPen color: #ff0000\nBrush color: none\n");
  dc.SelectObject(&blue);
  const tagRECT rect{0, 0, 100, 80};
  EXPECT_EQ(traceOf([&] { dc.Ellipse(&rect, -12.25); }),
            "Ellipse 0 0 100 80\nPrimitive: push graphic-context translate 50,40 rotate -12.25 ellipse "
            "0,0,50,40,0,360 pop graphic-context\nPen color: #ff0000\nBrush color: #0000ff\n");
}

TEST_F(Shapes, PrimitivesAreDrawnUnfilledInAnyColor) {
  CString primitive("rectangle 10 10 50 40");
  EXPECT_EQ(dc.DrawPrimitive(primitive, "#00ff00"), 1);
  expected.draw("rectangle 10 10 50 40", "#00ff00", "none");
  expectSame();
}

TEST_F(Shapes, PrimitivesThatTheLibraryRefusesDrawNothing) {
  EXPECT_EQ(dc.DrawPrimitive(CString("no such thing 10 10"), "#00ff00"), 1);
  EXPECT_EQ(dc.DrawPrimitive(CString(""), "#00ff00"), 1);
  expectUntouched();
}

TEST(ShapesInColor, AreDrawnOnColorPicturesAlike) {
  const ei4::test::Picture expected(90, 70, "RGB");
  const ei4::test::Picture picture(90, 70, "RGB");
  CDC dc(picture.image(), picture.info());
  CPen pen(0, 1, 0x2080FF);
  dc.SelectObject(&pen);
  dc.MoveTo(3, 60);
  dc.LineTo(80, 2);
  expected.draw("line 3 60 80 2", "#ff8020", "none");
  EXPECT_TRUE(picture.pixels() == expected.pixels());
}

TEST_F(Shapes, CostOfAPolylineGrowsWithItsPointsAlone) {
  // 200 000 points outside the picture: a text that is copied for each of them would be 2 * 10^11 bytes.
  const std::vector<tagPOINT> points(200000, tagPOINT{-5000, -5000});
  EXPECT_EQ(dc.Polyline(points.data(), static_cast<int>(points.size())), 1);
  expectUntouched();
}

}  // namespace
