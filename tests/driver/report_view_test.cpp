#include "driver/report_view.h"

#include <gtest/gtest.h>

#include <climits>

#include "annotation/annotation_set.h"

namespace {

struct View {
  CPoint offset;
  CSize displaySize;
};

// The refitted view; fails the test when there is none.
View refitted(View view, CSize clip, CSize target) {
  EXPECT_TRUE(CountImageSizes(view.offset, view.displaySize, clip, target));
  return view;
}

void expectRefused(View view, CSize clip, CSize target) {
  View same = view;
  EXPECT_FALSE(CountImageSizes(same.offset, same.displaySize, clip, target));
  EXPECT_EQ(same.offset, view.offset);
  EXPECT_EQ(same.displaySize, view.displaySize);
}

constexpr long kBeyondInt = 1L << 31;

}  // namespace

TEST(CountImageSizes, ScalesByTheTighterSideAndKeepsTheCentre) {
  const View view = refitted({CPoint(0, 0), CSize(400, 400)}, CSize(400, 400), CSize(200, 100));
  EXPECT_EQ(view.offset, CPoint(50, 0));
  EXPECT_EQ(view.displaySize, CSize(100, 100));

  const View upright = refitted({CPoint(0, 0), CSize(400, 400)}, CSize(400, 400), CSize(100, 200));
  EXPECT_EQ(upright.offset, CPoint(0, 50));
  EXPECT_EQ(upright.displaySize, CSize(100, 100));
}

TEST(CountImageSizes, Enlarges) {
  // The clip's centre (50, 25) lies 60 right of and 5 above the image's corner at (-10, 30).
  const View view = refitted({CPoint(-10, 30), CSize(70, 90)}, CSize(100, 50), CSize(300, 150));
  EXPECT_EQ(view.displaySize, CSize(210, 270));
  EXPECT_EQ(view.offset, CPoint(150 - 180, 75 + 15));
}

TEST(CountImageSizes, TruncatesHalvesAndProductsTowardZero) {
  const View view = refitted({CPoint(-1, 5), CSize(7, 9)}, CSize(5, 5), CSize(7, 8));
  // Scale 1.4: the display becomes 9.8 x 12.6, the way from its corner to the centre (2, 2) (4.2, -4.2).
  EXPECT_EQ(view.displaySize, CSize(9, 12));
  EXPECT_EQ(view.offset, CPoint(3 - 4, 4 + 4));
}

TEST(CountImageSizes, TakesNegativeDisplaySizes) {
  EXPECT_EQ(refitted({CPoint(0, 0), CSize(-5, -8)}, CSize(4, 4), CSize(2, 2)).displaySize, CSize(-2, -4));
}

TEST(CountImageSizes, RefusesBoxesWithoutPixels) {
  const View view{CPoint(1, 2), CSize(30, 40)};
  for (const CSize none : {CSize(0, 10), CSize(10, 0), CSize(-10, 10), CSize(10, -10), CSize(0, 0),
                           CSize(tagSIZE{kBeyondInt, 10}), CSize(tagSIZE{10, LONG_MIN})}) {
    expectRefused(view, none, CSize(10, 10));
    expectRefused(view, CSize(10, 10), none);
  }
}

TEST(CountImageSizes, RefusesWhatDoesNotFitAnInt) {
  const CSize one(1, 1);
  const CSize two(2, 2);
  EXPECT_EQ(refitted({CPoint(0, 0), CSize(INT_MAX / 2, INT_MIN / 2)}, one, two).displaySize,
            CSize(INT_MAX - 1, INT_MIN));
  expectRefused({CPoint(0, 0), CSize(INT_MAX / 2 + 1, 1)}, one, two);
  expectRefused({CPoint(0, 0), CSize(1, INT_MIN / 2 - 1)}, one, two);
  expectRefused({CPoint(INT_MIN, 0), CSize(1, 1)}, one, two);
  expectRefused({CPoint(0, INT_MAX), CSize(1, 1)}, one, two);
  expectRefused({CPoint(INT_MIN, INT_MIN), CSize(1, 1)}, CSize(INT_MAX, INT_MAX), CSize(INT_MAX, INT_MAX));

  expectRefused({CPoint(tagPOINT{LONG_MIN, 0}), CSize(1, 1)}, one, one);
  expectRefused({CPoint(0, 0), CSize(tagSIZE{1, kBeyondInt})}, one, one);
}

TEST(FitReportView, ShowsTheWholeImageIn128PixelsWithoutAClip) {
  CAnnotationSet set;
  set.SetDstImageSize(CSize(512, 256));
  set.m_ptOffset = CPoint(7, 9);  // of an earlier line that counts no more
  ASSERT_TRUE(FitReportView(set, CSize(0, 0)));
  EXPECT_EQ(set.m_sizeClip, CSize(128, 128));
  EXPECT_EQ(set.GetDstImageSize(), CSize(128, 64));
  EXPECT_EQ(set.m_ptOffset, CPoint(0, 32));
}

TEST(FitReportView, ShowsTheWholeImageInTheBoxWithoutAClip) {
  CAnnotationSet set;
  set.SetDstImageSize(CSize(400, 400));
  set.m_ptOffset = CPoint(7, 9);
  ASSERT_TRUE(FitReportView(set, CSize(200, 100)));
  EXPECT_EQ(set.m_sizeClip, CSize(200, 100));
  EXPECT_EQ(set.GetDstImageSize(), CSize(100, 100));
  EXPECT_EQ(set.m_ptOffset, CPoint(50, 0));
}

TEST(FitReportView, KeepsAReportedClipWithoutABox) {
  CAnnotationSet set;
  set.SetDstImageSize(CSize(400, 300));
  set.m_bReported[CAnnotationSet::REPORTED_CLIP] = 1;
  set.m_ptOffset = CPoint(-7, 9);
  set.m_sizeClip = CSize(210, 120);
  set.m_dZoomX = 5.0;  // a "clip" line sets it by itself
  ASSERT_TRUE(FitReportView(set, CSize(0, 0)));
  EXPECT_EQ(set.m_sizeClip, CSize(210, 120));
  EXPECT_EQ(set.GetDstImageSize(), CSize(400, 300));
  EXPECT_EQ(set.m_ptOffset, CPoint(-7, 9));
  EXPECT_EQ(set.m_dZoomX, 5.0);
}

TEST(FitReportView, FitsAReportedClipIntoTheBox) {
  CAnnotationSet set;
  set.m_sizeImg = CSize(100, 200);
  set.SetDstImageSize(CSize(400, 800));
  set.m_bReported[CAnnotationSet::REPORTED_CLIP] = 1;
  set.m_ptOffset = CPoint(-100, -40);
  set.m_sizeClip = CSize(200, 200);
  ASSERT_TRUE(FitReportView(set, CSize(100, 60)));
  // Scale 0.3: the centre (100, 100), (200, 140) away from the corner, comes to (50, 30).
  EXPECT_EQ(set.m_ptOffset, CPoint(50 - 60, 30 - 42));
  EXPECT_EQ(set.GetDstImageSize(), CSize(120, 240));
  EXPECT_EQ(set.m_sizeClip, CSize(100, 60));
  EXPECT_DOUBLE_EQ(set.m_dZoomX, 1.2);
  EXPECT_DOUBLE_EQ(set.m_dZoomY, 1.2);
}

TEST(FitReportView, RefusesABoxThatNothingFits) {
  for (const CSize box : {CSize(0, 50), CSize(50, 0), CSize(-1, -1), CSize(50, -50)}) {
    CAnnotationSet set;
    set.SetDstImageSize(CSize(400, 300));
    EXPECT_FALSE(FitReportView(set, box)) << box.cx << 'x' << box.cy;
  }
}

TEST(FitReportView, RefusesADisplayWithoutPixels) {
  for (const CSize size : {CSize(0, 50), CSize(50, 0), CSize(-50, 50)}) {
    CAnnotationSet set;
    set.SetDstImageSize(size);
    EXPECT_FALSE(FitReportView(set, CSize(0, 0))) << size.cx << 'x' << size.cy;
  }
}
