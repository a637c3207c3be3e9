#include "annotation/annotation.h"

#include <climits>

#include "annotation/ann_angle.h"
#include "annotation/ann_ruler.h"
#include "annotation/paint_fixture.h"

namespace {

using ei4::test::kBlackName;
using ei4::test::kBlue;
using ei4::test::kBlueName;
using ei4::test::kWhiteName;
using ei4::test::kYellow;
using ei4::test::kYellowName;

// Opens what painters share.
class Probe : public CAnnAngle {
 public:
  using CAnnotation::EllipseToShadow;
  using CAnnotation::LineToShadow;
  using CAnnotation::PaintSelectorBox;
  using CAnnotation::PolygonToShadow;
};

class AnnotationPaint : public ei4::test::Painting {
 protected:
  AnnotationPaint() { place(probe, CPoint(0, 0)); }

  Probe probe;
  CPen pen{0, 1, kYellow};
  CPen shadow{0, 1, 0};
};

TEST_F(AnnotationPaint, ValueIsCenteredOverItsShadow) {
  probe.m_strValue = "12.5 mm";
  probe.m_bShowValue = 1;
  // 7 characters are 49 pixels wide, half of that 24; the baseline lies 9 - 4 below the point.
  expected.text(kBlackName, {77, 56}, "12.5 mm").text(kYellowName, {76, 55}, "12.5 mm");
  expectPaints([&] { probe.PaintValue(&dc, kYellow, CPoint(100, 50), 1.0); });
}

TEST_F(AnnotationPaint, ShadowOfADarkTextIsWhite) {
  probe.m_strValue = "a";
  probe.m_bShowValue = 1;
  expected.text(kWhiteName, {98, 56}, "a").text(kBlueName, {97, 55}, "a");
  expectPaints([&] { probe.PaintValue(&dc, kBlue, CPoint(100, 50), 2.0); });
}

TEST_F(AnnotationPaint, HiddenLabelsAreNotPainted) {
  probe.m_strValue = "12.5 mm";
  EXPECT_EQ(traceOf([&] { probe.PaintValue(&dc, kYellow, CPoint(100, 50), 1.0); }), "");
  EXPECT_EQ(traceOf([&] { probe.PaintIndex(&dc, kYellow, CPoint(100, 50), 1.0); }), "");
}

TEST_F(AnnotationPaint, IndexIsTheNumberPaintedLikeAValue) {
  probe.m_nIndex = 12;
  probe.m_bShowIndex = 1;
  expected.text(kBlackName, {94, 56}, "12").text(kYellowName, {93, 55}, "12");
  expectPaints([&] { probe.PaintIndex(&dc, kYellow, CPoint(100, 50), 1.0); });
}

TEST_F(AnnotationPaint, IndexMayBeAnyNumber) {
  probe.m_nIndex = INT_MIN;
  probe.m_bShowIndex = 1;
  expected.label(kYellowName, kBlackName, {100, 50}, "-2147483648");
  expectPaints([&] { probe.PaintIndex(&dc, kYellow, CPoint(100, 50), 1.0); });
}

TEST_F(AnnotationPaint, LabelsHangingOverTheLeftEdgeMoveInWholeCells) {
  probe.m_strValue = "abcd";
  probe.m_bShowValue = 1;
  // The text begins at 5 - 14 = -9: two cells on, at 5. Its shadow begins at -8, and goes to 6.
  const std::string trace = traceOf([&] { probe.PaintValue(&dc, kYellow, CPoint(5, 50), 1.0); });
  EXPECT_EQ(trace,
            "DrawText-draw -8 56 \"abcd\"\nTextOut-string 6 56 cd\n"
            "DrawText-draw -9 55 \"abcd\"\nTextOut-string 5 55 cd\n");
}

TEST_F(AnnotationPaint, LabelsMayStandAnywhere) {
  probe.m_strValue = "far away";
  probe.m_bShowValue = 1;
  for (const int x : {INT_MIN, INT_MAX}) {
    for (const int y : {INT_MIN, INT_MAX}) probe.PaintValue(&dc, kYellow, CPoint(x, y), 1.0);
  }
  EXPECT_TRUE(picture.pixels() == ei4::test::Picture(kWidth, kHeight).pixels());
}

TEST_F(AnnotationPaint, ShadowPenContrastsWithTheColor) {
  EXPECT_STREQ(probe.CreateShadowPen(1.0, kYellow)->GetColorName(), kBlackName);
  EXPECT_STREQ(probe.CreateShadowPen(1.0, kBlue)->GetColorName(), kWhiteName);
}

TEST_F(AnnotationPaint, ShadowPenContrastsWithTheBrightColorInTheAlternateState) {
  putInAlternateState(probe);
  // Yellow's bright colour is white, whose shadow is black; blue's is black, whose shadow is white.
  EXPECT_STREQ(probe.CreateShadowPen(1.0, kYellow)->GetColorName(), kBlackName);
  EXPECT_STREQ(probe.CreateShadowPen(1.0, kBlue)->GetColorName(), kWhiteName);
}

TEST_F(AnnotationPaint, AlternateStateNeedsItsFlagAndItsKind) {
  probe.m_nState = 1;
  EXPECT_FALSE(probe.IsAlternate());
  probe.m_nStateKind = 1;
  EXPECT_TRUE(probe.IsAlternate());
  probe.m_nState = 0;
  EXPECT_FALSE(probe.IsAlternate());
}

TEST_F(AnnotationPaint, LineLiesOverItsShadow) {
  CPen* const before = dc.SelectObject(&pen);
  expected.move({10, 20})
      .line(kBlackName, {11, 21}, {61, 41})
      .line(kBlackName, {11, 20}, {61, 40})
      .line(kYellowName, {10, 20}, {60, 40});
  expectPaints([&] {
    dc.MoveTo(tagPOINT{10, 20});
    Probe::LineToShadow(&dc, CPoint(60, 40), &shadow);
  });
  EXPECT_EQ(dc.GetCurrentPosition(), CPoint(60, 40));
  EXPECT_EQ(dc.SelectObject(before), &pen);
}

TEST_F(AnnotationPaint, ShadowsEndAtTheLimitsOfInt) {
  dc.MoveTo(tagPOINT{INT_MAX, 0});
  const std::string trace = traceOf([&] { Probe::LineToShadow(&dc, CPoint(0, INT_MAX), &shadow); });
  EXPECT_EQ(
      trace,
      "MoveTo-point 2147483647 1\nDraing Primitive: 'line 2147483647 1 1 2147483647'\nLineTo 1 2147483647\n"
      "MoveTo-point 2147483647 0\nDraing Primitive: 'line 2147483647 0 1 2147483647'\nLineTo 1 2147483647\n"
      "MoveTo-point 2147483647 0\nDraing Primitive: 'line 2147483647 0 0 2147483647'\nLineTo 0 2147483647\n");
}

TEST_F(AnnotationPaint, EllipseIsAnOutlineOverItsShadow) {
  CPen* const before = dc.SelectObject(&pen);
  expected.ellipse(kBlackName, 21, 11, 92, 62);
  expected.ellipse(kBlackName, 21, 10, 92, 61);
  expected.ellipse(kYellowName, 20, 10, 91, 61);
  expectPaints([&] { Probe::EllipseToShadow(&dc, CRect(20, 10, 91, 61), &shadow); });
  EXPECT_EQ(dc.SelectObject(before), &pen);
}

TEST_F(AnnotationPaint, PolygonIsAnOutlineOverItsShadow) {
  CPen* const before = dc.SelectObject(&pen);
  const std::vector<CPoint> points{CPoint(20, 20), CPoint(90, 30), CPoint(50, 90)};
  expected.polygon(kBlackName, {{21, 21}, {91, 31}, {51, 91}});
  expected.polygon(kBlackName, {{21, 20}, {91, 30}, {51, 90}});
  expected.polygon(kYellowName, {{20, 20}, {90, 30}, {50, 90}});
  expectPaints([&] { Probe::PolygonToShadow(&dc, points.data(), 3, &shadow); });
  EXPECT_EQ(dc.SelectObject(before), &pen);
}

TEST_F(AnnotationPaint, HandleBoxesAreNotShown) {
  EXPECT_EQ(traceOf([&] { probe.PaintSelectorBox(&dc, CPoint(10, 10), &pen, &shadow); }), "");
}

class SetPaint : public AnnotationPaint {
 protected:
  void addRuler(ANN_MODE kind, CPoint from, CPoint to) {
    auto* const ruler = dynamic_cast<CAnnRuler*>(
        set.CreateAnnotation(kind, from, kYellow, CSize(kWidth, kHeight), ORIENTATION_AS_STORED));
    ruler->m_bShowIndex = 0;
    ruler->m_bShowValue = 0;
    ruler->m_ptEnd = to;
  }
  // A ruler along x: bars of 12 pixels, 6 above and 6 below.
  void expectRuler(int x0, int x1, int y) {
    expected.strokeTo(kYellowName, kBlackName, {x0, y}, {x1, y});
    expected.strokeTo(kYellowName, kBlackName, {x1, y + 6}, {x1, y - 6});
    expected.strokeTo(kYellowName, kBlackName, {x0, y + 6}, {x0, y - 6});
  }
};

TEST_F(SetPaint, PaintsInTheOrderOfCreationButNoCalibrations) {
  addRuler(ANN_RULER, CPoint(20, 30), CPoint(90, 30));
  addRuler(ANN_CALIB, CPoint(20, 60), CPoint(90, 60));
  addRuler(ANN_OB_FL, CPoint(20, 90), CPoint(90, 90));
  expectRuler(20, 90, 30);
  expectRuler(20, 90, 90);
  expectPaints([&] { set.PaintAnnotations(&dc, 1.0); });
}

TEST_F(SetPaint, PaintsCalibrationsByThemselves) {
  addRuler(ANN_RULER, CPoint(20, 30), CPoint(90, 30));
  addRuler(ANN_CALIB, CPoint(20, 60), CPoint(90, 60));
  expectRuler(20, 90, 60);
  expectPaints([&] { set.PaintCalibrations(&dc, 1.0); });
}

TEST_F(SetPaint, PaintsNothingWhenThereAreOnlyCalibrations) {
  addRuler(ANN_CALIB, CPoint(20, 60), CPoint(90, 60));
  expectPaints([&] { set.PaintAnnotations(&dc, 1.0); });
}

TEST_F(SetPaint, FramesTheRegionOfInterestLast) {
  addRuler(ANN_RULER, CPoint(20, 30), CPoint(90, 30));
  set.m_bRoi = 1;
  set.m_rectRoi = CRect(60, 24, 70, 36);
  expectRuler(20, 90, 30);
  expected.line("#000000", {60, 24}, {70, 24}).line("#000000", {69, 24}, {69, 36});
  expected.line("#000000", {69, 35}, {60, 35}).lineOn("#000000", {60, 35}, {60, 24});
  for (const int x : {60, 66}) {
    expected.line("#aaaaaa", {x, 24}, {x + 3, 24}).line("#aaaaaa", {x, 35}, {x + 3, 35});
  }
  for (const int y : {24, 30}) {
    expected.line("#aaaaaa", {60, y}, {60, y + 3}).line("#aaaaaa", {69, y}, {69, y + 3});
  }
  expectPaints([&] { set.PaintAnnotations(&dc, 1.0); });
}

TEST_F(SetPaint, FramesNothingWithoutARegionOfInterest) {
  set.m_rectRoi = CRect(60, 24, 70, 36);
  expectPaints([&] { set.PaintAnnotations(&dc, 1.0); });
}

}  // namespace
