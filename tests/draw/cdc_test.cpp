#include "draw/cdc.h"

#include <gtest/gtest.h>

#include <climits>

#include "drawing_fixture.h"

namespace {

using CdcState = ei4::test::Drawing;

TEST_F(CdcState, MeasuresTheCellOfTheProgramsOwnFont) {
  EXPECT_EQ(FONT_WIDTH, 7);
  EXPECT_EQ(FONT_HEIGHT, 9);
}

TEST_F(CdcState, IsMeasuredAnewByEachContext) {
  FONT_WIDTH = 100;
  FONT_HEIGHT = 200;
  const CDC another(picture.image(), picture.info());
  EXPECT_EQ(FONT_WIDTH, 7);
  EXPECT_EQ(FONT_HEIGHT, 9);
}

TEST_F(CdcState, DrawsNothingWhenMade) { expectUntouched(); }

TEST_F(CdcState, GivesBackThePenAndTheBrushBefore) {
  CPen pen(0, 1, 0x0000FF);
  CPen other(0, 1, 0x00FF00);
  CPen* const own = dc.SelectObject(&pen);
  ASSERT_NE(own, nullptr);
  EXPECT_STREQ(own->GetColorName(), "#000000");
  EXPECT_EQ(dc.SelectObject(&other), &pen);
  EXPECT_EQ(dc.SelectObject(own), &other);

  CBrush brush(0x0000FF);
  CBrush* const ownBrush = dc.SelectObject(&brush);
  ASSERT_NE(ownBrush, nullptr);
  EXPECT_STREQ(ownBrush->GetColorName(), "#000000");
  EXPECT_EQ(dc.SelectObject(static_cast<CBrush*>(nullptr)), &brush);
  EXPECT_EQ(dc.SelectObject(ownBrush), nullptr);
}

TEST_F(CdcState, TakesFontsWithoutEffect) {
  CFont font;
  EXPECT_EQ(dc.SelectObject(&font), nullptr);
  EXPECT_EQ(dc.SelectObject(&font), nullptr);
  EXPECT_EQ(FONT_WIDTH, 7);
}

TEST_F(CdcState, StartsWithBlackTextAndGivesBackTheColorBefore) {
  EXPECT_EQ(dc.SetTextColor(0x00FF00), 0U);
  EXPECT_EQ(dc.SetTextColor(0x12345678), 0x00FF00U);
  EXPECT_EQ(dc.SetTextColor(0), 0x12345678U);
}

TEST_F(CdcState, MovesAndReturnsTheNewPosition) {
  EXPECT_EQ(dc.MoveTo(3, 4), CPoint(3, 4));
  EXPECT_EQ(dc.MoveTo(-5, 6), CPoint(-5, 6));
  const tagPOINT wide{LONG_MAX, LONG_MIN};
  EXPECT_EQ(dc.MoveTo(wide), wide);
}

TEST_F(CdcState, KnowsItsPositionAndItsPicturesSize) {
  EXPECT_EQ(dc.GetCurrentPosition(), CPoint(0, 0));
  dc.MoveTo(3, 4);
  dc.LineTo(-5, 6);
  EXPECT_EQ(dc.GetCurrentPosition(), CPoint(-5, 6));
  EXPECT_EQ(dc.GetImageSize(), CSize(160, 120));
}

TEST_F(CdcState, TracesMoves) {
  EXPECT_EQ(traceOf([this] { dc.MoveTo(3, -4); }), "MoveTo-int 3 -4\n");
  EXPECT_EQ(traceOf([this] { dc.MoveTo(tagPOINT{5000000000, -6}); }), "MoveTo-point 5000000000 -6\n");
}

TEST_F(CdcState, TracesNoSelectionsAndNoColors) {
  CPen pen(0, 1, 0x0000FF);
  CBrush brush(0x0000FF);
  CFont font;
  EXPECT_EQ(traceOf([&] {
              dc.SelectObject(&pen);
              dc.SelectObject(&brush);
              dc.SelectObject(&font);
              dc.SetTextColor(0x0000FF);
              const CDC another(picture.image(), picture.info());
            }),
            "");
}

TEST_F(CdcState, IsSilentWithoutTheFlag) {
  testing::internal::CaptureStdout();
  const tagPOINT points[] = {{1, 1}, {20, 1}, {20, 20}};
  tagRECT rect{0, 0, 30, 30};
  dc.MoveTo(1, 2);
  dc.LineTo(3, 4);
  dc.Polyline(points, 3);
  dc.Polygon(points, 3);
  dc.Ellipse(&rect, 0.0);
  dc.RoundRect(&rect, CPoint(1, 1));
  dc.DrawText("text", &rect, 77);
  std::fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

}  // namespace
