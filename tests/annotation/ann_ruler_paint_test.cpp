#include "annotation/ann_ruler.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <limits>

#include "annotation/paint_fixture.h"

namespace {

using ei4::test::kBlackName;
using ei4::test::kWhiteName;
using ei4::test::kYellowName;
using ei4::test::XY;

class RulerPaint : public ei4::test::Painting {
 protected:
  RulerPaint() { place(ruler, CPoint(20, 60)); }

  void stroke(XY from, XY to) { expected.strokeTo(kYellowName, kBlackName, from, to); }
  // Across a ruler along x, from left to right.
  void longBar(int x, int y = 60) { stroke({x, y + 6}, {x, y - 6}); }
  void shortBar(int x, int y = 60) { stroke({x, y + 4}, {x, y - 4}); }

  CAnnRuler ruler;
};

TEST_F(RulerPaint, DrawsTheLineThenTheBarAtTheEndThenAtTheStart) {
  ruler.m_ptEnd = CPoint(120, 60);
  stroke({20, 60}, {120, 60});
  longBar(120);
  longBar(20);
  expectPaints(ruler);
}

TEST_F(RulerPaint, BarsOfADownwardRulerLieAlongX) {
  // d = (0, 60): normal (8, 0), half (-4, 0)
  ruler.m_ptEnd = CPoint(20, 120);
  stroke({20, 60}, {20, 120});
  stroke({14, 120}, {26, 120});
  stroke({14, 60}, {26, 60});
  expectPaints(ruler);
}

TEST_F(RulerPaint, BarsOfASlantedRulerAreTruncatedTowardZero) {
  // d = (100, 40), length 107.7: normal (2.97, -7.43), so (2, -7); half (-1, 3), half as long again (-1, 4);
  // the bar (3, -10).
  ruler.m_ptEnd = CPoint(120, 100);
  stroke({20, 60}, {120, 100});
  stroke({119, 104}, {122, 94});
  stroke({19, 64}, {22, 54});
  expectPaints(ruler);
}

TEST_F(RulerPaint, BarsGrowWithTheScale) {
  // As above, but the normal becomes (2 * 2, -14 + 0.5), so (4, -13); half (-2 + 0.5, 6), so (-1, 6);
  // half as long again (-1, 9); the bar (6, -19).
  ruler.m_ptEnd = CPoint(120, 100);
  stroke({20, 60}, {120, 100});
  stroke({119, 109}, {125, 90});
  stroke({19, 69}, {25, 50});
  expectPaints(ruler, 2.0);
}

TEST_F(RulerPaint, WithoutLengthIsAPoint) {
  ruler.m_ptEnd = CPoint(20, 60);
  for (int i = 0; i < 3; ++i) stroke({20, 60}, {20, 60});
  expectPaints(ruler);
}

TEST_F(RulerPaint, LabelsStandAtTheirPointsIndexFirst) {
  ruler.m_ptEnd = CPoint(120, 60);
  showIndex(ruler, 3, CPoint(15, 50));
  showValue(ruler, "12.5 mm", CPoint(70, 45));
  stroke({20, 60}, {120, 60});
  longBar(120);
  longBar(20);
  expected.label(kYellowName, kBlackName, {15, 50}, "3");
  expected.label(kYellowName, kBlackName, {70, 45}, "12.5 mm");
  expectPaints(ruler);
}

TEST_F(RulerPaint, FollowsTheView) {
  set.SetViewParameters(ORIENTATION_QUARTER_TURN, 0.5, 0.25, CPoint(10, 20));
  // (x, y) shows at ((150 - y) * 0.25 + 10, x * 0.5 + 20)
  ruler.m_ptEnd = CPoint(120, 60);
  showIndex(ruler, 3, CPoint(20, 50));
  stroke({32, 30}, {32, 80});
  stroke({26, 80}, {38, 80});
  stroke({26, 30}, {38, 30});
  expected.label(kYellowName, kBlackName, {35, 30}, "3");
  expectPaints(ruler);
}

TEST_F(RulerPaint, AlternateStateIsBright) {
  putInAlternateState(ruler);
  ruler.m_ptEnd = CPoint(120, 60);
  showIndex(ruler, 3, CPoint(15, 50));
  expected.strokeTo(kWhiteName, kBlackName, {20, 60}, {120, 60});
  expected.strokeTo(kWhiteName, kBlackName, {120, 66}, {120, 54});
  expected.strokeTo(kWhiteName, kBlackName, {20, 66}, {20, 54});
  expected.label(kYellowName, kBlackName, {15, 50}, "3");
  expectPaints(ruler);
}

TEST_F(RulerPaint, SelectionShowsNoBoxes) {
  ruler.m_ptEnd = CPoint(120, 60);
  ruler.m_bSelected = 1;
  ruler.m_nStateKind = 4;
  stroke({20, 60}, {120, 60});
  longBar(120);
  longBar(20);
  expectPaints(ruler);
}

TEST_F(RulerPaint, CalibrationLooksTheSame) {
  CAnnCalib calib;
  place(calib, CPoint(20, 60));
  calib.m_ptEnd = CPoint(120, 60);
  stroke({20, 60}, {120, 60});
  longBar(120);
  longBar(20);
  expectPaints(calib);
}

// A ruler 100 pixels long whose measure makes a tick stand every 5 pixels.
struct Scale {
  double measure;
  int longEvery;  // ticks
};

class RulerTicks : public RulerPaint, public testing::WithParamInterface<Scale> {};

TEST_P(RulerTicks, AreLongOnceInTenUnitsOfTheirKind) {
  ruler.m_bTicks = 1;
  ruler.m_dValue = GetParam().measure;
  ruler.m_ptEnd = CPoint(120, 60);
  stroke({20, 60}, {120, 60});
  longBar(120);
  for (int i = 0; i < 20; ++i) {
    if (i % GetParam().longEvery == 0) {
      longBar(20 + 5 * i);
    } else {
      shortBar(20 + 5 * i);
    }
  }
  expectPaints(ruler);
}

// 4 pixels stand for 1.6 (ticks every 2), 4 (every 5), 8 (every 10), and the same a hundred times as much.
INSTANTIATE_TEST_SUITE_P(EveryKind, RulerTicks,
                         testing::Values(Scale{40, 5}, Scale{100, 2}, Scale{200, 10}, Scale{4000, 5},
                                         Scale{10000, 2}, Scale{20000, 10}));

TEST_F(RulerPaint, TicksEndBeforeTheMeasureDoes) {
  // 4 pixels stand for 1.68: a tick every 2, at 0, 2, ... 40 of 42, which is 238 pixels at most.
  ruler.m_bTicks = 1;
  ruler.m_dValue = 42;
  ruler.m_ptEnd = CPoint(120, 60);
  stroke({20, 60}, {120, 60});
  longBar(120);
  for (int i = 0; i <= 20; ++i) {
    const int x = 20 + 100 * 2 * i / 42;
    if (i % 5 == 0) {
      longBar(x);
    } else {
      shortBar(x);
    }
  }
  expectPaints(ruler);
}

TEST_F(RulerPaint, TicksOfASlantedRulerUseTheShortAndTheLongBar) {
  // The bars are those of the slanted ruler above; the ticks stand at (5i, 2i).
  ruler.m_bTicks = 1;
  ruler.m_dValue = 100;
  ruler.m_ptEnd = CPoint(120, 100);
  stroke({20, 60}, {120, 100});
  stroke({119, 104}, {122, 94});
  for (int i = 0; i < 20; ++i) {
    const XY at{20 + 5 * i, 60 + 2 * i};
    if (i % 2 == 0) {
      stroke({at.x - 1, at.y + 4}, {at.x + 2, at.y - 6});
    } else {
      stroke({at.x - 1, at.y + 3}, {at.x + 1, at.y - 4});
    }
  }
  expectPaints(ruler);
}

TEST_F(RulerPaint, TicksStandWiderAtALargerScale) {
  // 8 pixels stand for 8: ticks every 10, each tenth of them long; bars twice as large but for the half pixel
  // that rounding takes from negative lengths: normal (0, -15), half (0, 8).
  ruler.m_bTicks = 1;
  ruler.m_dValue = 100;
  ruler.m_ptEnd = CPoint(120, 60);
  stroke({20, 60}, {120, 60});
  stroke({120, 72}, {120, 50});  // 1.5 * 8 = 12 below, and 22.5, so 22, up from there
  stroke({20, 72}, {20, 50});
  for (int x = 30; x < 120; x += 10) stroke({x, 68}, {x, 53});
  expectPaints(ruler, 2.0);
}

TEST_F(RulerPaint, OnlyTicksThatCanShowAreDrawn) {
  // One unit a pixel: 4 stand for 4, so ticks every 5, every second one long.
  ruler.m_bTicks = 1;
  ruler.m_dValue = 2000000;
  place(ruler, CPoint(-1000000, 60));
  ruler.m_ptEnd = CPoint(1000000, 60);
  stroke({-1000000, 60}, {1000000, 60});
  for (int x = -50; x <= 250; x += 5) {
    if (x % 10 == 0) {
      longBar(x);
    } else {
      shortBar(x);
    }
  }
  const std::string trace = traceOf(ruler);
  EXPECT_TRUE(picture.pixels() == expected.picture().pixels());
  EXPECT_LT(std::count(trace.begin(), trace.end(), '\n'), 1000);
}

TEST_F(RulerPaint, ScaleOfAnyMeasureAndAnyLengthEnds) {
  using Limits = std::numeric_limits<double>;
  ruler.m_bTicks = 1;
  for (const double measure : {0.0, -1.0, 1e-323, Limits::min(), 1.0, 1e300, Limits::max(),
                               Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()}) {
    ruler.m_dValue = measure;
    for (const CPoint end : {CPoint(20, 60), CPoint(INT_MAX, 60), CPoint(INT_MIN, INT_MAX), CPoint(21, 61)}) {
      ruler.m_ptEnd = end;
      for (const double scale : {1.0, 1e-300, -3.0, 1e300}) {
        const std::string trace = traceOf(ruler, scale);
        EXPECT_LT(std::count(trace.begin(), trace.end(), '\n'), 20000);
      }
    }
  }
}

}  // namespace
