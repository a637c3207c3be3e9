#include "annotation/ann_text.h"

#include <array>
#include <climits>
#include <string>

#include "annotation/paint_fixture.h"

namespace {

using ei4::test::kBlackName;
using ei4::test::kWhiteName;
using ei4::test::kYellowName;

class TextPaint : public ei4::test::Painting {
 protected:
  TextPaint() {
    place(text, CPoint(80, 60));
    text.m_strText = "note";
  }

  CAnnText text;
};

TEST_F(TextPaint, HangsRightOfAndBelowItsPoint) {
  expected.measured("note").text(kBlackName, {81, 70}, "note").text(kYellowName, {80, 69}, "note");
  expectPaints(text);
  EXPECT_EQ(text.m_sizeText, CSize(28, 9));
}

TEST_F(TextPaint, IndexFollowsButNoValue) {
  showIndex(text, 7, CPoint(75, 55));
  showValue(text, "hidden", CPoint(20, 20));
  expected.measured("note").shadowedText(kYellowName, kBlackName, {80, 69}, "note");
  expected.label(kYellowName, kBlackName, {75, 55}, "7");
  expectPaints(text);
}

TEST_F(TextPaint, AlternateStateIsBrightButForTheIndex) {
  putInAlternateState(text);
  showIndex(text, 7, CPoint(75, 55));
  expected.measured("note").shadowedText(kWhiteName, kBlackName, {80, 69}, "note");
  expected.label(kYellowName, kBlackName, {75, 55}, "7");
  expectPaints(text);
}

TEST_F(TextPaint, BrightTextOfADarkColorIsBlackOverWhite) {
  putInAlternateState(text);
  text.m_crColor = 0xFF0000;
  expected.measured("note").shadowedText(kBlackName, kWhiteName, {80, 69}, "note");
  expectPaints(text);
}

TEST_F(TextPaint, EmptyTextShowsNothing) {
  text.m_strText = "";
  const auto untouched = picture.pixels();
  text.PaintAnnotation(&dc, 1.0);
  EXPECT_TRUE(picture.pixels() == untouched);
}

TEST_F(TextPaint, MayStandAnywhere) {
  const auto untouched = picture.pixels();
  for (const int x : {INT_MIN, INT_MAX}) {
    for (const int y : {INT_MIN, INT_MAX}) {
      text.m_ptBase = CPoint(x, y);
      for (int orientation = 0; orientation < 8; ++orientation) {
        text.m_Orientation = static_cast<ORIENTATION>(orientation);
        text.PaintAnnotation(&dc, 1.0);
      }
    }
  }
  EXPECT_TRUE(picture.pixels() == untouched);
}

// Where a way of (x, y) in the picture as stored leads on the display.
CPoint shown(CPoint way, int orientation) {
  const int x = static_cast<int>(way.x);
  const int y = static_cast<int>(way.y);
  const std::array<CPoint, 8> ways{CPoint(x, y),  CPoint(-y, x),  CPoint(-x, -y), CPoint(y, -x),
                                   CPoint(-x, y), CPoint(-y, -x), CPoint(x, -y),  CPoint(y, x)};
  return ways.at(static_cast<std::size_t>(orientation));
}

class TextPaintTurned : public TextPaint, public testing::WithParamInterface<std::tuple<int, int>> {};

TEST_P(TextPaintTurned, StaysOnItsSideOfTheAnatomyAndUpright) {
  const auto [written, view] = GetParam();
  text.m_Orientation = static_cast<ORIENTATION>(written);
  set.m_Orientation = static_cast<ORIENTATION>(view);
  // The stored picture's quadrant that was on the lower right when the text was written.
  for (const CPoint quadrant : {CPoint(1, 1), CPoint(1, -1), CPoint(-1, 1), CPoint(-1, -1)}) {
    if (shown(quadrant, written) != CPoint(1, 1)) continue;
    const CPoint side = shown(quadrant, view);
    const CPoint point = set.ImageToDisplay(CPoint(80, 60));
    const int left = static_cast<int>(point.x) - (side.x > 0 ? 0 : 28);
    const int bottom = static_cast<int>(point.y) + (side.y > 0 ? 9 : 0);
    expected.measured("note").shadowedText(kYellowName, kBlackName, {left, bottom}, "note");
  }
  expectPaints(text);
}

INSTANTIATE_TEST_SUITE_P(EveryPair, TextPaintTurned,
                         testing::Combine(testing::Range(0, 8), testing::Range(0, 8)));

TEST_F(TextPaint, OrientationsThatAreNoneCountAsUnturned) {
  text.m_Orientation = static_cast<ORIENTATION>(9);
  set.m_Orientation = static_cast<ORIENTATION>(INT_MIN);
  expected.measured("note").shadowedText(kYellowName, kBlackName, {80, 69}, "note");
  expectPaints(text);
}

TEST_F(TextPaint, MeasuresByCells) {
  EXPECT_EQ(CAnnText::CalcTextSize(&dc, "WWW ii", 2.0), CSize(42, 9));
  EXPECT_EQ(CAnnText::CalcTextSize(&dc, "", 1.0), CSize(0, 9));
}

class SpineLabelPaint : public ei4::test::Painting {
 protected:
  SpineLabelPaint() {
    place(label, CPoint(80, 60));
    label.m_strText = "T12";
  }

  CAnnSpnLabel label;
};

TEST_F(SpineLabelPaint, IsCenteredOnItsPoint) {
  // 21 by 9 pixels: 10 to the left, 4 up, the baseline 9 below that
  expected.measured("T12").shadowedText(kYellowName, kBlackName, {70, 65}, "T12");
  expectPaints(label);
}

TEST_F(SpineLabelPaint, StaysCenteredInAnyView) {
  set.m_Orientation = ORIENTATION_HALF_TURN;  // the point shows at (120, 90)
  label.m_Orientation = ORIENTATION_QUARTER_TURN;
  showIndex(label, 4, CPoint(60, 60));
  expected.measured("T12").shadowedText(kYellowName, kBlackName, {110, 95}, "T12");
  expected.label(kYellowName, kBlackName, {140, 90}, "4");
  expectPaints(label);
}

TEST_F(SpineLabelPaint, GivesItsPlace) {
  CRect rect(0, 0, 0, 0);
  label.m_sizeText = CSize(21, 9);
  label.GetTextRect(&rect);
  EXPECT_EQ(rect, CRect(70, 56, 91, 65));
}

}  // namespace
