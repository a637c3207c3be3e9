#include "annotation/ann_oval.h"

#include <climits>
#include <initializer_list>
#include <string>

#include "annotation/ob_measure_oval.h"
#include "annotation/paint_fixture.h"

namespace {

using ei4::test::kBlackName;
using ei4::test::kWhiteName;
using ei4::test::kYellowName;
using ei4::test::XY;

class OvalPaint : public ei4::test::Painting {
 protected:
  void box(CPoint base, CPoint second) {
    place(oval, base);
    oval.m_ptSecond = second;
  }
  void label(XY center, const char* text) { expected.label(kYellowName, kBlackName, center, text); }

  CAnnArea oval;
};

TEST_F(OvalPaint, IsAnOutlineInTheBoxOfItsPoints) {
  box(CPoint(40, 30), CPoint(141, 90));
  expected.shadowedEllipse(kYellowName, kBlackName, 40, 30, 141, 90);
  expectPaints(oval);
}

TEST_F(OvalPaint, TakesItsCornersInAnyOrder) {
  expected.shadowedEllipse(kYellowName, kBlackName, 40, 30, 141, 90);
  const std::string trace = expected.trace();
  box(CPoint(141, 30), CPoint(40, 90));
  EXPECT_EQ(traceOf(oval), trace);
  box(CPoint(40, 90), CPoint(141, 30));
  EXPECT_EQ(traceOf(oval), trace);
}

TEST_F(OvalPaint, LabelsStandAtTheirPoints) {
  box(CPoint(40, 30), CPoint(140, 90));
  showIndex(oval, 9, CPoint(30, 30));
  showValue(oval, "3.1 cm2", CPoint(90, 60));
  expected.shadowedEllipse(kYellowName, kBlackName, 40, 30, 140, 90);
  label({30, 30}, "9");
  label({90, 60}, "3.1 cm2");
  expectPaints(oval);
}

TEST_F(OvalPaint, AlternateStateIsBright) {
  box(CPoint(40, 30), CPoint(140, 90));
  putInAlternateState(oval);
  expected.shadowedEllipse(kWhiteName, kBlackName, 40, 30, 140, 90);
  expectPaints(oval);
}

TEST_F(OvalPaint, DensitiesAndCircumferencesLookTheSame) {
  expected.shadowedEllipse(kYellowName, kBlackName, 40, 30, 140, 90);
  CAnnLight density;
  CObMeasureHC head;
  CObMeasureAC abdomen;
  for (CAnnOval* each : std::initializer_list<CAnnOval*>{&density, &head, &abdomen}) {
    place(*each, CPoint(40, 30));
    each->m_ptSecond = CPoint(140, 90);
    EXPECT_EQ(traceOf(*each), expected.trace());
  }
}

TEST_F(OvalPaint, FlatOneHasNoOutlineButLabels) {
  box(CPoint(40, 30), CPoint(140, 30));
  showIndex(oval, 9, CPoint(30, 30));
  label({30, 30}, "9");
  oval.PaintAnnotation(&dc, 1.0);
  EXPECT_TRUE(picture.pixels() == expected.picture().pixels());
}

TEST_F(OvalPaint, OutsideThePictureIsLeftOutButForItsLabels) {
  box(CPoint(-50, 30), CPoint(-5, 60));
  showIndex(oval, 9, CPoint(30, 30));
  label({30, 30}, "9");
  expectPaints(oval);
}

TEST_F(OvalPaint, TooLargeIsLeftOut) {
  box(CPoint(100, 30), CPoint(100 + 200001, 60));
  expectPaintsNothing(oval);
  box(CPoint(INT_MIN, INT_MIN), CPoint(INT_MAX, INT_MAX));
  expectPaintsNothing(oval);
}

TEST_F(OvalPaint, AroundThePictureIsLeftOut) {
  box(CPoint(-90000, -90000), CPoint(90000, 90000));
  expectPaintsNothing(oval);
}

TEST_F(OvalPaint, WhoseBoxAloneMeetsThePictureIsLeftOut) {
  box(CPoint(195, 145), CPoint(90000, 90000));  // an ellipse does not reach the corners of its box
  expectPaintsNothing(oval);
}

// Places at which outlines of each size come into the picture, pass around a corner, and go out again.
class OvalAtTheEdge : public OvalPaint, public testing::WithParamInterface<CSize> {};

TEST_P(OvalAtTheEdge, ShowsWhatAnUnconditionalDrawingShows) {
  const int width = static_cast<int>(GetParam().cx);
  const int height = static_cast<int>(GetParam().cy);
  const auto drawEllipse = [&](const ei4::test::Picture& on, int left, int top, const char* color) {
    std::string primitive = "ellipse";
    for (const int value : {(2 * left + width) / 2, (2 * top + height) / 2, width / 2, height / 2}) {
      primitive += " " + std::to_string(value);
    }
    on.draw(primitive + " 0 360", color, "none");
  };

  int shown = 0;
  for (int step = 0; step <= 24; ++step) {
    const int left = -width - 6 + step * (kWidth + width + 12) / 24;
    const int top = -height - 6 + step * 7 % 25 * (kHeight + height + 12) / 24;
    const ei4::test::Picture wanted(kWidth, kHeight);
    drawEllipse(wanted, left + 1, top + 1, kBlackName);
    drawEllipse(wanted, left + 1, top, kBlackName);
    drawEllipse(wanted, left, top, kYellowName);

    const ei4::test::Picture painted(kWidth, kHeight);
    const auto untouched = painted.pixels();
    CDC context(painted.image(), painted.info());
    box(CPoint(left, top), CPoint(left + width, top + height));
    oval.PaintAnnotation(&context, 1.0);
    ASSERT_TRUE(painted.pixels() == wanted.pixels()) << left << " " << top;
    shown += painted.pixels() == untouched ? 0 : 1;
  }
  EXPECT_GT(shown, 5);
  EXPECT_LT(shown, 25);
}

INSTANTIATE_TEST_SUITE_P(SmallAndLarge, OvalAtTheEdge,
                         testing::Values(CSize(3, 5), CSize(40, 20), CSize(230, 180), CSize(290, 215),
                                         CSize(700, 400)));

}  // namespace
