#include "annotation/ann_oval.h"

#include <climits>
#include <cstdint>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

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
TEST_F(OvalPaint, OfMoreThanTwiceTheLargestPictureIsLeftOut) {
  box(CPoint(-32668, 40), CPoint(100, 80));
  EXPECT_FALSE(traceOf(oval).empty());
  box(CPoint(-32669, 40), CPoint(100, 80));
  EXPECT_EQ(traceOf(oval), "");
}

// The oval in a box of this size, as the painter draws it and as it looks when nothing is left out.
struct TwoPictures {
  std::vector<std::uint16_t> painted;
  std::vector<std::uint16_t> wanted;
  bool shows;
};

class OvalBesideDrawing : public OvalPaint {
 protected:
  TwoPictures drawBothWays(CSize area, CPoint corner, CSize size) {
    const int columns = static_cast<int>(area.cx);
    const int rows = static_cast<int>(area.cy);
    const ei4::test::Picture wanted(columns, rows);
    drawEllipse(wanted, corner + CSize(1, 1), size, kBlackName);
    drawEllipse(wanted, corner + CSize(1, 0), size, kBlackName);
    drawEllipse(wanted, corner, size, kYellowName);

    const ei4::test::Picture painted(columns, rows);
    const auto untouched = painted.pixels();
    CDC context(painted.image(), painted.info());
    box(corner, corner + size);
    oval.PaintAnnotation(&context, 1.0);
    return {painted.pixels(), wanted.pixels(), painted.pixels() != untouched};
  }

 private:
  static void drawEllipse(const ei4::test::Picture& on, CPoint corner, CSize size, const char* color) {
    std::string primitive = "ellipse";
    for (const long value :
         {(2 * corner.x + size.cx) / 2, (2 * corner.y + size.cy) / 2, size.cx / 2, size.cy / 2}) {
      primitive += " " + std::to_string(value);
    }
    on.draw(primitive + " 0 360", color, "none");
  }
};

class OvalAtTheEdge : public OvalBesideDrawing, public testing::WithParamInterface<CSize> {};

TEST_P(OvalAtTheEdge, ShowsWhatAnUnconditionalDrawingShows) {
  const int width = static_cast<int>(GetParam().cx);
  const int height = static_cast<int>(GetParam().cy);
  int shown = 0;
  for (int step = 0; step <= 24; ++step) {
    const CPoint corner(-width - 6 + step * (kWidth + width + 12) / 24,
                        -height - 6 + step * 7 % 25 * (kHeight + height + 12) / 24);
    const TwoPictures pictures = drawBothWays(CSize(kWidth, kHeight), corner, GetParam());
    ASSERT_TRUE(pictures.painted == pictures.wanted) << corner.x << " " << corner.y;
    shown += pictures.shows ? 1 : 0;
  }
  EXPECT_GT(shown, 5);
  EXPECT_LT(shown, 25);
}

// The tip of a long flat ellipse runs nearly level: what lies close to the outline is not close in radii.
TEST_F(OvalBesideDrawing, ShowsTheTipOfALongFlatOneThatPassesAlongTheEdge) {
  const auto expectAlike = [&](CSize area, CPoint center, CSize radii) {
    const CSize size(2 * static_cast<int>(radii.cx), 2 * static_cast<int>(radii.cy));
    const TwoPictures pictures = drawBothWays(area, center - radii, size);
    EXPECT_TRUE(pictures.shows);
    EXPECT_TRUE(pictures.painted == pictures.wanted) << center.x;
  };
  expectAlike(CSize(70, 21), CPoint(-1562, -2), CSize(1571, 10));
  expectAlike(CSize(43, 22), CPoint(1258, -2), CSize(1228, 5));
}

TEST_F(OvalBesideDrawing, ShowsWhatAnUnconditionalDrawingShowsOfFlatOnesAnywhere) {
  std::mt19937 random(20);
  const auto upTo = [&random](int most) {
    return static_cast<int>(random() % static_cast<unsigned>(most + 1));
  };
  for (int i = 0; i < 150; ++i) {
    const CSize area(20 + upTo(60), 10 + upTo(30));
    const bool lies = upTo(1) == 0;
    const CSize size(lies ? 100 + upTo(3000) : 2 + upTo(40), lies ? 2 + upTo(40) : 100 + upTo(3000));
    const CPoint corner(upTo(static_cast<int>(area.cx + size.cx) + 20) - static_cast<int>(size.cx) - 10,
                        upTo(static_cast<int>(area.cy + size.cy) + 20) - static_cast<int>(size.cy) - 10);
    const TwoPictures pictures = drawBothWays(area, corner, size);
    ASSERT_TRUE(pictures.painted == pictures.wanted) << area.cx << "x" << area.cy << " at " << corner.x << " "
                                                     << corner.y << ", " << size.cx << "x" << size.cy;
  }
}

INSTANTIATE_TEST_SUITE_P(SmallAndLarge, OvalAtTheEdge,
                         testing::Values(CSize(3, 5), CSize(40, 20), CSize(230, 180), CSize(290, 215),
                                         CSize(700, 400)));

}  // namespace
