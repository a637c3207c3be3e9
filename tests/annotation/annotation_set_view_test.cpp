// The two transforms, the zoom and the visible part.

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>

#include "annotation/annotation_set.h"

namespace {

ORIENTATION orientation(int value) { return static_cast<ORIENTATION>(value); }

std::string shown(tagPOINT pt) { return std::to_string(pt.x) + " " + std::to_string(pt.y); }

// A picture of 100 x 60, twice as wide and three times as high, moved by (5, -7).
struct Zoomed : CAnnotationSet {
  explicit Zoomed(int orient) {
    m_sizeImg = CSize(100, 60);
    SetViewParameters(orientation(orient), 2.0, 3.0, CPoint(5, -7));
  }
};

struct Pair {
  int orientation;
  CPoint from;
  CPoint to;
};

TEST(ImageToDisplay, TurnsThenZoomsThenMoves) {
  // (10, 20) turned within 100 x 60, each coordinate times its zoom (2 and 3, exchanged when odd), plus (5, -7).
  const Pair pairs[] = {
      {0, {10, 20}, {10 * 2 + 5, 20 * 3 - 7}}, {1, {10, 20}, {40 * 3 + 5, 10 * 2 - 7}},
      {2, {10, 20}, {90 * 2 + 5, 40 * 3 - 7}}, {3, {10, 20}, {20 * 3 + 5, 90 * 2 - 7}},
      {4, {10, 20}, {90 * 2 + 5, 20 * 3 - 7}}, {5, {10, 20}, {40 * 3 + 5, 90 * 2 - 7}},
      {6, {10, 20}, {10 * 2 + 5, 40 * 3 - 7}}, {7, {10, 20}, {20 * 3 + 5, 10 * 2 - 7}},
      {1, {0, 0}, {60 * 3 + 5, -7}},
  };
  for (const Pair& pair : pairs)
    EXPECT_EQ(shown(Zoomed(pair.orientation).ImageToDisplay(pair.from)), shown(pair.to)) << pair.orientation;
}

TEST(ImageToDisplay, LeavesPointsInOrientationsThatAreNone) {
  EXPECT_EQ(shown(Zoomed(8).ImageToDisplay({10, 20})), "25 53");
  EXPECT_EQ(shown(Zoomed(9).ImageToDisplay({10, 20})), "35 33")
      << "odd: the zooms are exchanged all the same";
  EXPECT_EQ(shown(Zoomed(-1).ImageToDisplay({10, 20})), "35 33");
  EXPECT_EQ(shown(Zoomed(INT_MIN).ImageToDisplay({10, 20})), "25 53");
}

TEST(ImageToDisplay, TruncatesTowardZeroInFrontOfTheMove) {
  CAnnotationSet set;
  set.SetViewParameters(ORIENTATION_AS_STORED, 0.5, 0.3, CPoint(0, 0));
  EXPECT_EQ(shown(set.ImageToDisplay({3, 5})), "1 1");
  EXPECT_EQ(shown(set.ImageToDisplay({-3, -5})), "-1 -1");
  set.m_ptOffset = CPoint(10, 10);
  EXPECT_EQ(shown(set.ImageToDisplay({-3, -5})), "9 9");
}

TEST(DisplayToImage, MovesZoomsAndTurnsBack) {
  // (125, 113) moved back is (120, 120): (60, 40) with the zooms as they are, (40, 60) with them exchanged.
  const CPoint from(125, 113);
  const Pair pairs[] = {
      {0, from, {60, 40}},       {1, from, {60, 60 - 40}},  {2, from, {100 - 60, 60 - 40}},
      {3, from, {100 - 60, 40}}, {4, from, {100 - 60, 40}}, {5, from, {100 - 60, 60 - 40}},
      {6, from, {60, 60 - 40}},  {7, from, {60, 40}},       {8, from, {60, 40}},
      {9, from, {40, 60}},       {-1, from, {40, 60}},
  };
  for (const Pair& pair : pairs)
    EXPECT_EQ(shown(Zoomed(pair.orientation).DisplayToImage(pair.from)), shown(pair.to)) << pair.orientation;
}

TEST(DisplayToImage, UndoesImageToDisplay) {
  for (int orient = 0; orient < 8; ++orient) {
    const Zoomed set(orient);
    for (int y = -3; y < 70; ++y) {
      for (int x = -3; x < 110; ++x) {
        const CPoint back = set.DisplayToImage(set.ImageToDisplay({x, y}));
        ASSERT_EQ(shown(back), shown(CPoint(x, y))) << orient;
      }
    }
  }
}

TEST(DisplayToImage, UndoesImageToDisplayUpToTruncation) {
  for (int orient = 0; orient < 8; ++orient) {
    CAnnotationSet set;
    set.m_sizeImg = CSize(100, 60);
    set.SetViewParameters(orientation(orient), 1.3, 1.7, CPoint(-40, 11));
    for (int y = 0; y <= 60; ++y) {
      for (int x = 0; x <= 100; ++x) {
        const CPoint back = set.DisplayToImage(set.ImageToDisplay({x, y}));
        ASSERT_LE(std::abs(back.x - x), 1) << orient;
        ASSERT_LE(std::abs(back.y - y), 1) << orient;
      }
    }
  }
}

TEST(DisplayToImage, OnlyTurnsBackWithoutAZoom) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double zooms[][2] = {{0, 0}, {0.0001, 2}, {2, 0.0001}, {-1, 2}, {nan, 2}, {2, nan}};
  for (const auto& zoom : zooms) {
    CAnnotationSet set;
    set.m_sizeImg = CSize(100, 60);
    set.SetViewParameters(ORIENTATION_QUARTER_TURN, zoom[0], zoom[1], CPoint(5, -7));
    EXPECT_EQ(shown(set.DisplayToImage({10, 20})), "20 50") << zoom[0] << " " << zoom[1];
  }
  CAnnotationSet set;
  set.SetViewParameters(ORIENTATION_AS_STORED, 0.00011, 0.00011, CPoint(5, -7));
  EXPECT_EQ(shown(set.DisplayToImage({16, 15})), "100000 200000") << "just above the limit";
}

TEST(Transforms, EndAtTheLimitsOfInt) {
  CAnnotationSet set;
  set.SetViewParameters(ORIENTATION_AS_STORED, 1e300, 1e300, CPoint(0, 0));
  EXPECT_EQ(shown(set.ImageToDisplay({1, -1})), shown(CPoint(INT_MAX, INT_MIN)));
  set.m_ptOffset = CPoint(INT_MIN, INT_MAX);
  EXPECT_EQ(shown(set.ImageToDisplay({1, -1})), shown(CPoint(INT_MAX, INT_MIN)));
  set.SetViewParameters(ORIENTATION_AS_STORED, 1.0, 1.0, CPoint(INT_MAX, INT_MIN));
  EXPECT_EQ(shown(set.ImageToDisplay({INT_MAX, INT_MIN})), shown(CPoint(INT_MAX, INT_MIN)));
  EXPECT_EQ(shown(set.DisplayToImage({INT_MIN, INT_MAX})), shown(CPoint(INT_MIN, INT_MAX)));
  set.SetViewParameters(ORIENTATION_AS_STORED, 2.0, 2.0, CPoint(-INT_MAX, 0));
  EXPECT_EQ(shown(set.ImageToDisplay({INT_MAX, 0})), shown(CPoint(INT_MAX, 0)))
      << "only what comes out in the end must fit";
}

TEST(Transforms, GiveZeroForAZoomThatIsNoNumber) {
  CAnnotationSet set;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  set.SetViewParameters(ORIENTATION_AS_STORED, nan, infinity, CPoint(5, 6));
  EXPECT_EQ(shown(set.ImageToDisplay({1, 0})), "5 6") << "0 times infinity is no number either";
  EXPECT_EQ(shown(set.ImageToDisplay({1, 1})), shown(CPoint(5, INT_MAX)));
}

TEST(Transforms, AreDefinedForAllSixtyFourBits) {
  constexpr long kEnds[] = {LONG_MIN, -1, 0, LONG_MAX};
  for (int orient = -1; orient <= 9; ++orient) {
    for (const long a : kEnds) {
      for (const long b : kEnds) {
        CAnnotationSet set;
        set.m_sizeImg = tagSIZE{a, b};
        set.SetViewParameters(orientation(orient), 0.5, 1e18, tagPOINT{b, a});
        for (const CPoint& pt : {set.ImageToDisplay(tagPOINT{b, a}), set.DisplayToImage(tagPOINT{a, b})}) {
          EXPECT_TRUE(pt.x >= INT_MIN && pt.x <= INT_MAX);
          EXPECT_TRUE(pt.y >= INT_MIN && pt.y <= INT_MAX);
        }
      }
    }
  }
}

TEST(SetDstImageSize, GivesTheZoom) {
  CAnnotationSet set;
  set.m_sizeImg = CSize(100, 50);
  set.SetDstImageSize(CSize(150, 200));
  EXPECT_EQ(set.GetDstImageSize(), CSize(150, 200));
  EXPECT_EQ(set.m_dZoomX, 1.5);
  EXPECT_EQ(set.m_dZoomY, 4.0);
}

TEST(SetDstImageSize, ExchangesTheSidesForOddOrientations) {
  for (int orient = 0; orient < 10; ++orient) {
    CAnnotationSet set;
    set.m_sizeImg = CSize(100, 50);
    set.m_Orientation = orientation(orient);
    set.SetDstImageSize(CSize(25, 200));
    EXPECT_EQ(set.m_sizeDst, CSize(25, 200)) << "kept as given";
    const bool isOdd = orient % 2 != 0;
    EXPECT_EQ(set.m_dZoomX, isOdd ? 2.0 : 0.25) << orient;
    EXPECT_EQ(set.m_dZoomY, isOdd ? 0.5 : 4.0) << orient;
  }
}

TEST(SetImgZoomFactor, GivesTheDisplaySizeTruncated) {
  CAnnotationSet set;
  set.m_sizeImg = CSize(101, 50);
  set.SetImgZoomFactor(1.5, 2.0);
  EXPECT_EQ(set.m_dZoomX, 1.5);
  EXPECT_EQ(set.m_dZoomY, 2.0);
  EXPECT_EQ(set.m_sizeDst, CSize(151, 100));
  set.m_Orientation = ORIENTATION_QUARTER_TURN;
  set.SetImgZoomFactor(1.5, 2.0);
  EXPECT_EQ(set.m_sizeDst, CSize(100, 151));
}

TEST(SetImgZoomFactor, IgnoresWhatDoesNotExceedZero) {
  CAnnotationSet set;
  set.SetImgZoomFactor(2.0, 3.0);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double zooms[][2] = {{0, 1}, {1, 0}, {-1, 1}, {1, -1}, {nan, 1}, {1, nan}};
  for (const auto& zoom : zooms) set.SetImgZoomFactor(zoom[0], zoom[1]);
  EXPECT_EQ(set.m_dZoomX, 2.0);
  EXPECT_EQ(set.m_dZoomY, 3.0);
  EXPECT_EQ(set.m_sizeDst, CSize(512, 768));
}

TEST(SetImgZoomFactor, EndsTheDisplaySizeAtTheLimitsOfInt) {
  CAnnotationSet set;
  set.m_sizeImg = CSize(-2, 3);
  set.SetImgZoomFactor(1e300, std::numeric_limits<double>::infinity());
  EXPECT_EQ(set.m_sizeDst, CSize(INT_MIN, INT_MAX));
}

TEST(SetViewParameters, StoresAllAsTheyAre) {
  CAnnotationSet set;
  set.m_sizeDst = CSize(7, 8);
  set.SetViewParameters(orientation(12), -1.0, 0.0, CPoint(3, 4));
  EXPECT_EQ(set.m_Orientation, 12);
  EXPECT_EQ(set.m_dZoomX, -1.0);
  EXPECT_EQ(set.m_dZoomY, 0.0);
  EXPECT_EQ(set.m_ptOffset, CPoint(3, 4));
  EXPECT_EQ(set.m_sizeDst, CSize(7, 8));
}

TEST(GetRoiDisplay, IsThePicturesPlaceWithoutARoi) {
  CAnnotationSet set;
  set.m_ptOffset = CPoint(3, 4);
  set.m_sizeDst = CSize(50, 60);
  set.m_rectRoi = CRect(1, 2, 3, 4);
  EXPECT_EQ(set.GetRoiDisplay(), CRect(3, 4, 53, 64));
}

TEST(GetRoiDisplay, BoundsTheFourCorners) {
  // (10, 20) to (30, 50) within 100 x 60.
  const CRect expected[] = {{10, 20, 30, 50}, {10, 10, 40, 30}, {70, 10, 90, 40}, {20, 70, 50, 90},
                            {70, 20, 90, 50}, {10, 70, 40, 90}, {10, 10, 30, 40}, {20, 10, 50, 30}};
  for (int orient = 0; orient < 8; ++orient) {
    CAnnotationSet set;
    set.m_sizeImg = CSize(100, 60);
    set.m_Orientation = orientation(orient);
    set.m_bRoi = 1;
    set.m_rectRoi = CRect(10, 20, 30, 50);
    EXPECT_EQ(set.GetRoiDisplay(), expected[orient]) << orient;
    set.m_rectRoi = CRect(30, 50, 10, 20);  // edges exchanged: the corners are the same
    EXPECT_EQ(set.GetRoiDisplay(), expected[orient]) << orient;
  }
}

TEST(GetRoiDisplay, TakesEdgesOfAnySize) {
  CAnnotationSet set;
  set.m_bRoi = 1;
  set.m_rectRoi = tagRECT{LONG_MIN, 0, LONG_MAX, 5};
  EXPECT_EQ(set.GetRoiDisplay(), CRect(INT_MIN, 0, INT_MAX, 5));
}

TEST(ViewMode, IsAskedOfTheSet) {
  struct Row {
    IMAGE_MODE mode;
    int fit, zoom, actual;
  };
  for (const Row& row : {Row{IMAGE_FIT, 1, 0, 0}, Row{IMAGE_ZOOM, 0, 1, 0}, Row{IMAGE_FIT_ACTUAL, 1, 0, 1},
                         Row{IMAGE_ZOOM_ACTUAL, 0, 1, 1}}) {
    CAnnotationSet set;
    set.m_ImageMode = row.mode;
    EXPECT_EQ(set.IsImageFit(), row.fit) << row.mode;
    EXPECT_EQ(set.IsImageZoom(), row.zoom) << row.mode;
    EXPECT_EQ(set.IsImageActual(), row.actual) << row.mode;
  }
}

}  // namespace
