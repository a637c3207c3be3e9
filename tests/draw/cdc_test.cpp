#include "draw/cdc.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>
#include <vector>

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

// What may be drawn is bounded by work, not by time.
class Work : public ei4::test::Drawing {
 protected:
  void SetUp() override { dc.SelectObject(static_cast<CBrush*>(nullptr)); }

  static void drawAll(CDC& on) {
    on.MoveTo(3, 4);
    on.LineTo(90, 70);
    const std::vector<tagPOINT> points{{20, 20}, {60, 30}, {40, 90}};
    on.Polyline(points.data(), 3);
    on.Polygon(points.data(), 3);
    on.Ellipse(30, 30, 90, 80, 0.0);
    on.TextOut(10, 40, "Label");
  }
};

TEST_F(Work, IsNotBoundedUnlessAsked) {
  for (int i = 0; i < 300; ++i) dc.Ellipse(500, 500, 600, 600, 0.0);
  EXPECT_FALSE(dc.HasLeftOut());
}

TEST_F(Work, ThatSufficesChangesNothing) {
  dc.LimitWork(1'000'000);
  drawAll(dc);
  EXPECT_FALSE(dc.HasLeftOut());
  CDC unlimited(expected.image(), expected.info());
  unlimited.SelectObject(static_cast<CBrush*>(nullptr));
  drawAll(unlimited);
  expectSame();
}

TEST_F(Work, ThatIsMissingLeavesOutAllThatFollows) {
  dc.LimitWork(100);
  drawAll(dc);
  EXPECT_TRUE(dc.HasLeftOut());
  EXPECT_EQ(dc.GetCurrentPosition(), CPoint(90, 70)) << "the position moves all the same";
  expectUntouched();
  dc.LimitWork(1'000'000);
  EXPECT_FALSE(dc.HasLeftOut()) << "a new bound";
  dc.LineTo(3, 4);
  EXPECT_FALSE(picture.pixels() == untouched.pixels());
}

TEST_F(Work, IsTakenByEachKindOfDrawing) {
  const auto takes = [this](long enough, long tooLittle, const std::function<void()>& draw) {
    for (const long work : {enough, tooLittle}) {
      dc.LimitWork(work);
      draw();
      EXPECT_EQ(dc.HasLeftOut(), work == tooLittle) << work;
    }
  };
  takes(1500 + 5 * 150, 1499 + 5 * 150, [this] { dc.TextOut(10, 40, "Label"); });
  takes(2 * 1500 + 2 * 150, 3299, [this] { dc.TextOut(10, 40, "a\nb"); });
  // 10 columns and one beyond in the first row, 10 more in the second; two points.
  takes(150 + 2 + 21, 172, [this] {
    dc.MoveTo(10, 40);
    dc.LineTo(19, 40);
  });
  takes(3'000'000, 800'000, [this] { dc.Ellipse(-16000, 40, 16000, 80, 0.0); });  // 800,000 points
  takes(150 + 2000, 2149, [this] { dc.LineTo(19, 40); });  // to where it is: the library's
}

TEST_F(Work, EndsSoonHoweverMuchIsAskedFor) {
  dc.LimitWork(3'000'000);
  std::vector<tagPOINT> points;
  for (int i = 0; i < 2000; ++i) points.push_back({i % 2 * 159, i * 7 % 120});
  for (int i = 0; i < 2'000; ++i) {
    dc.Polygon(points.data(), static_cast<int>(points.size()));
    dc.Ellipse(-16000, -16000, 16000, 16000, 0.0);
    dc.TextOut(0, i % 120, std::string(1000, 'x').c_str());
  }
  EXPECT_TRUE(dc.HasLeftOut());
}

}  // namespace
