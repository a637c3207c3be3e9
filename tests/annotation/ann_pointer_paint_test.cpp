#include "annotation/ann_pointer.h"

#include <climits>
#include <string>

#include "annotation/paint_fixture.h"

namespace {

using ei4::test::kBlackName;
using ei4::test::kWhiteName;
using ei4::test::kYellowName;
using ei4::test::XY;

class PointerPaint : public ei4::test::Painting {
 protected:
  void arrow(CPoint tip, CPoint tail) {
    place(pointer, tip);
    pointer.m_ptSecond = tail;
  }
  void expectArrow(XY tip, XY tail, XY first, XY second) {
    stroke(tail, tip);
    stroke(tip, {tip.x + first.x, tip.y + first.y});
    stroke(tip, {tip.x + second.x, tip.y + second.y});
  }
  void stroke(XY from, XY to) { expected.strokeTo(kYellowName, kBlackName, from, to); }
  void label(XY center, const char* text) { expected.label(kYellowName, kBlackName, center, text); }

  CAnnPointer pointer;
};

TEST_F(PointerPaint, DrawsTheShaftFromTheTailAndTwoBarbsFromTheTip) {
  // (30, 40) is 50 long: (300 - 160, 400 + 120) / 50 and (300 + 160, 400 - 120) / 50
  arrow(CPoint(60, 50), CPoint(90, 90));
  expectArrow({60, 50}, {90, 90}, {2, 10}, {9, 5});
  expectPaints(pointer);
}

TEST_F(PointerPaint, BarbsAreTruncatedTowardTheTip) {
  arrow(CPoint(90, 90), CPoint(60, 50));
  expectArrow({90, 90}, {60, 50}, {-2, -10}, {-9, -5});
  expectPaints(pointer);
}

TEST_F(PointerPaint, BarbsAreNoLongerThanTheShaft) {
  // (3, 4) is 5 long: (15 - 16, 20 + 12) / 5 and (15 + 16, 20 - 12) / 5
  arrow(CPoint(60, 50), CPoint(63, 54));
  expectArrow({60, 50}, {63, 54}, {0, 6}, {6, 1});
  expectPaints(pointer);
}

TEST_F(PointerPaint, HeadGrowsWithTheScale) {
  // (600 - 320, 800 + 240) / 50 and (600 + 320, 800 - 240) / 50
  arrow(CPoint(60, 50), CPoint(90, 90));
  expectArrow({60, 50}, {90, 90}, {5, 20}, {18, 11});
  expectPaints(pointer, 2.0);
}

TEST_F(PointerPaint, HeadKeepsItsSizeWhenThePictureIsEnlarged) {
  set.SetViewParameters(ORIENTATION_AS_STORED, 2.0, 2.0, CPoint(0, 0));
  arrow(CPoint(30, 25), CPoint(45, 45));
  expectArrow({60, 50}, {90, 90}, {2, 10}, {9, 5});
  expectPaints(pointer);
}

TEST_F(PointerPaint, WithoutLengthHasNoBarbs) {
  arrow(CPoint(60, 50), CPoint(60, 50));
  stroke({60, 50}, {60, 50});
  expectPaints(pointer);
}

TEST_F(PointerPaint, AlternateStateIsBright) {
  putInAlternateState(pointer);
  arrow(CPoint(60, 50), CPoint(90, 90));
  expected.strokeTo(kWhiteName, kBlackName, {90, 90}, {60, 50});
  expected.strokeTo(kWhiteName, kBlackName, {60, 50}, {62, 60});
  expected.strokeTo(kWhiteName, kBlackName, {60, 50}, {69, 55});
  expectPaints(pointer);
}

TEST_F(PointerPaint, LabelBeginsRightOfATailOnTheRight) {
  arrow(CPoint(60, 50), CPoint(90, 90));
  showIndex(pointer, 6, CPoint(55, 45));
  showValue(pointer, "lesion", CPoint(10, 10));  // the report's point is not used
  expectArrow({60, 50}, {90, 90}, {2, 10}, {9, 5});
  label({55, 45}, "6");
  expected.shadowedText(kYellowName, kBlackName, {94, 95}, "lesion");
  expectPaints(pointer);
}

TEST_F(PointerPaint, LabelEndsLeftOfATailOnTheLeft) {
  arrow(CPoint(90, 90), CPoint(60, 50));
  showValue(pointer, "lesion", CPoint(10, 10));
  expectArrow({90, 90}, {60, 50}, {-2, -10}, {-9, -5});
  expected.shadowedText(kYellowName, kBlackName, {60 - 4 - 42, 55}, "lesion");
  expectPaints(pointer);
}

TEST_F(PointerPaint, LabelIsCenteredBelowATailBelow) {
  arrow(CPoint(100, 50), CPoint(100, 90));
  showValue(pointer, "lesion", CPoint(10, 10));
  expectArrow({100, 50}, {100, 90}, {-4, 10}, {4, 10});
  label({100, 98}, "lesion");
  expectPaints(pointer);
}

TEST_F(PointerPaint, LabelIsCenteredAboveATailAbove) {
  arrow(CPoint(100, 90), CPoint(100, 50));
  showValue(pointer, "lesion", CPoint(10, 10));
  expectArrow({100, 90}, {100, 50}, {4, -10}, {-4, -10});
  label({100, 42}, "lesion");
  expectPaints(pointer);
}

TEST_F(PointerPaint, LabelKeepsFartherAwayAtALargerScale) {
  arrow(CPoint(100, 50), CPoint(100, 90));
  showValue(pointer, "lesion", CPoint(10, 10));
  expectArrow({100, 50}, {100, 90}, {-8, 20}, {8, 20});
  label({100, 90 + 8 + 4}, "lesion");
  expectPaints(pointer, 2.0);
}

TEST_F(PointerPaint, HiddenOrEmptyLabelIsNotPainted) {
  arrow(CPoint(60, 50), CPoint(90, 90));
  expectArrow({60, 50}, {90, 90}, {2, 10}, {9, 5});
  const std::string trace = expected.trace();
  pointer.m_strValue = "lesion";
  EXPECT_EQ(traceOf(pointer), trace);
  pointer.m_strValue = "";
  pointer.m_bShowValue = 1;
  EXPECT_EQ(traceOf(pointer), trace);
}

TEST_F(PointerPaint, MayReachAnywhere) {
  for (const int x : {INT_MIN, 60, INT_MAX}) {
    for (const int y : {INT_MIN, 50, INT_MAX}) {
      arrow(CPoint(60, 50), CPoint(x, y));
      showValue(pointer, "lesion", CPoint(10, 10));
      pointer.PaintAnnotation(&dc, 1.0);
      arrow(CPoint(x, y), CPoint(INT_MIN, INT_MAX));
      pointer.PaintAnnotation(&dc, 1e300);
    }
  }
}

}  // namespace
