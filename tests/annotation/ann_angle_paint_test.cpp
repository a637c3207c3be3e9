#include "annotation/ann_angle.h"

#include "annotation/paint_fixture.h"

namespace {

using ei4::test::kBlackName;
using ei4::test::kBlue;
using ei4::test::kBlueName;
using ei4::test::kWhiteName;
using ei4::test::kYellowName;
using ei4::test::XY;

class AnglePaint : public ei4::test::Painting {
 protected:
  AnglePaint() {
    place(angle, CPoint(60, 100));
    angle.m_ptSecond = CPoint(110, 40);
    angle.m_ptThird = CPoint(160, 120);
  }
  void stroke(XY from, XY to) { expected.strokeTo(kYellowName, kBlackName, from, to); }
  void label(XY center, const char* text) { expected.label(kYellowName, kBlackName, center, text); }

  CAnnAngle angle;
};

TEST_F(AnglePaint, DrawsBothArmsFromTheVertex) {
  stroke({60, 100}, {110, 40});
  stroke({60, 100}, {160, 120});
  expectPaints(angle);
}

TEST_F(AnglePaint, LabelsStandAtTheirPointsIndexFirst) {
  showIndex(angle, 2, CPoint(50, 100));
  showValue(angle, "61.5 deg", CPoint(130, 83));
  stroke({60, 100}, {110, 40});
  stroke({60, 100}, {160, 120});
  label({50, 100}, "2");
  label({130, 83}, "61.5 deg");
  expectPaints(angle);
}

TEST_F(AnglePaint, LabelsMoveWithThePoints) {
  showIndex(angle, 2, CPoint(50, 100));
  showValue(angle, "x", CPoint(130, 83));
  angle.m_ptBase = CPoint(60, 110);    // the index hangs on the vertex: 10 lower
  angle.m_ptSecond = CPoint(111, 40);  // the value on the middle of the ends, which was (135, 80) and
  angle.m_ptThird = CPoint(170, 121);  // is (140, 80): 281 and 161 are halved toward zero
  stroke({60, 110}, {111, 40});
  stroke({60, 110}, {170, 121});
  label({50, 110}, "2");
  label({135, 83}, "x");
  expectPaints(angle);
}

TEST_F(AnglePaint, AlternateStateIsBrightButForTheLabels) {
  putInAlternateState(angle);
  angle.m_crColor = kBlue;  // its bright colour is black, whose shadow is white
  showValue(angle, "x", CPoint(130, 83));
  expected.strokeTo(kBlackName, kWhiteName, {60, 100}, {110, 40});
  expected.strokeTo(kBlackName, kWhiteName, {60, 100}, {160, 120});
  expected.label(kBlueName, kWhiteName, {130, 83}, "x");
  expectPaints(angle);
}

TEST_F(AnglePaint, OtherStatesAndSelectionLookTheSame) {
  angle.m_bSelected = 1;
  angle.m_nState = 1;
  angle.m_nStateKind = 7;
  stroke({60, 100}, {110, 40});
  stroke({60, 100}, {160, 120});
  expectPaints(angle, 2.0);  // pens of every width draw lines of one pixel
}

// Each orientation's map of points, by hand: the picture is 200 x 150 and shown without zoom.
struct Turn {
  int orientation;
  XY vertex, second, third;
};

class AnglePaintTurned : public AnglePaint, public testing::WithParamInterface<Turn> {};

TEST_P(AnglePaintTurned, FollowsThePicture) {
  const Turn& turn = GetParam();
  set.m_Orientation = static_cast<ORIENTATION>(turn.orientation);
  stroke(turn.vertex, turn.second);
  stroke(turn.vertex, turn.third);
  expectPaints(angle);
}

INSTANTIATE_TEST_SUITE_P(
    EveryOrientation, AnglePaintTurned,
    testing::Values(Turn{0, {60, 100}, {110, 40}, {160, 120}}, Turn{1, {50, 60}, {110, 110}, {30, 160}},
                    Turn{2, {140, 50}, {90, 110}, {40, 30}}, Turn{3, {100, 140}, {40, 90}, {120, 40}},
                    Turn{4, {140, 100}, {90, 40}, {40, 120}}, Turn{5, {50, 140}, {110, 90}, {30, 40}},
                    Turn{6, {60, 50}, {110, 110}, {160, 30}}, Turn{7, {100, 60}, {40, 110}, {120, 160}}));

}  // namespace
