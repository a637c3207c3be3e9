#include "annotation/ann_cob_angle.h"

#include <climits>
#include <string>

#include "annotation/paint_fixture.h"

namespace {

using ei4::test::kBlackName;
using ei4::test::kYellowName;
using ei4::test::XY;

class CobbAnglePaint : public ei4::test::Painting {
 protected:
  // Lines whose middles are where the link shall begin and end.
  void placeLink(CPoint from, CPoint to) {
    place(angle, from - CSize(20, 5));
    angle.SetCOBTop(from + CSize(20, 5));
    angle.m_ptSecond = to - CSize(15, -3);
    angle.SetCOBBottom(to + CSize(15, -3));
  }
  void expectLines(XY from, XY to) {
    stroke({from.x - 20, from.y - 5}, {from.x + 20, from.y + 5});
    stroke({to.x - 15, to.y + 3}, {to.x + 15, to.y - 3});
  }
  void stroke(XY from, XY to) { expected.strokeTo(kYellowName, kBlackName, from, to); }
  void label(XY center, const char* text) { expected.label(kYellowName, kBlackName, center, text); }

  CAnnCOBAngle angle;
};

TEST_F(CobbAnglePaint, DrawsTheUpperAndTheLowerLineAndADashedLink) {
  placeLink(CPoint(50, 25), CPoint(50, 85));
  expectLines({50, 25}, {50, 85});
  for (int y = 25; y < 85; y += 6) expected.line(kYellowName, {50, y}, {50, y + 3});
  expectPaints(angle);
}

TEST_F(CobbAnglePaint, CutsTheLastDashOff) {
  placeLink(CPoint(60, 40), CPoint(60, 60));
  expectLines({60, 40}, {60, 60});
  expected.line(kYellowName, {60, 40}, {60, 43});
  expected.line(kYellowName, {60, 46}, {60, 49});
  expected.line(kYellowName, {60, 52}, {60, 55});
  expected.line(kYellowName, {60, 58}, {60, 60});
  expectPaints(angle);
}

TEST_F(CobbAnglePaint, TruncatesTheEndsOfASlantedLinksDashes) {
  placeLink(CPoint(100, 40), CPoint(70, 80));  // (-30, 40): 50 long
  expectLines({100, 40}, {70, 80});
  for (int i = 0; i <= 8; ++i) {
    const int from = 6 * i;
    const int to = from == 48 ? 50 : from + 3;
    expected.line(kYellowName, {100 - 30 * from / 50, 40 + 40 * from / 50},
                  {100 - 30 * to / 50, 40 + 40 * to / 50});
  }
  expectPaints(angle);
}

TEST_F(CobbAnglePaint, LastDashMayBeShorterThanAPixel) {
  placeLink(CPoint(60, 40), CPoint(68, 49));  // (8, 9): 12.04 long
  expectLines({60, 40}, {68, 49});
  expected.line(kYellowName, {60, 40}, {61, 42});  // at 3: (1.99, 2.24)
  expected.line(kYellowName, {63, 44}, {65, 46});  // at 6: (3.99, 4.48); at 9: (5.98, 6.73)
  expected.line(kYellowName, {67, 48}, {68, 49});  // at 12: (7.97, 8.97)
  expectPaints(angle);
}

TEST_F(CobbAnglePaint, LinksTheTruncatedMiddles) {
  place(angle, CPoint(10, 20));
  angle.SetCOBTop(CPoint(81, 21));  // (45, 20)
  angle.m_ptSecond = CPoint(10, 26);
  angle.SetCOBBottom(CPoint(81, 25));  // (45, 25)
  stroke({10, 20}, {81, 21});
  stroke({10, 26}, {81, 25});
  expected.line(kYellowName, {45, 20}, {45, 23});
  expectPaints(angle);
}

TEST_F(CobbAnglePaint, WithoutALinkHasNoDashes) {
  placeLink(CPoint(50, 25), CPoint(50, 25));
  expectLines({50, 25}, {50, 25});
  expectPaints(angle);
}

TEST_F(CobbAnglePaint, LabelsStandAtTheirPoints) {
  placeLink(CPoint(60, 40), CPoint(60, 41));
  showIndex(angle, 12, CPoint(20, 40));
  showValue(angle, "28 deg", CPoint(120, 70));
  expectLines({60, 40}, {60, 41});
  expected.line(kYellowName, {60, 40}, {60, 41});
  label({20, 40}, "12");
  label({120, 70}, "28 deg");
  expectPaints(angle);
}

TEST_F(CobbAnglePaint, DashesOfALongLinkShowWhereTheyBelong) {
  // The link begins 6 * 100000 pixels above the picture, so that its dashes meet y = 0, 6, 12, ...
  placeLink(CPoint(50, -600000), CPoint(50, 1000000));
  expectLines({50, -600000}, {50, 1000000});
  for (int y = 0; y < 150; y += 6) expected.line(kYellowName, {50, y}, {50, y + 3});
  const std::string trace = traceOf(angle);
  EXPECT_TRUE(picture.pixels() == expected.picture().pixels());
  EXPECT_LT(trace.size(), 10000U);
}

TEST_F(CobbAnglePaint, MayReachAnywhere) {
  place(angle, CPoint(INT_MIN, INT_MIN));
  angle.SetCOBTop(CPoint(INT_MIN, INT_MIN));
  angle.m_ptSecond = CPoint(INT_MAX, INT_MAX);
  angle.SetCOBBottom(CPoint(INT_MAX, INT_MAX));
  EXPECT_LT(traceOf(angle).size(), 20000U);
}

}  // namespace
