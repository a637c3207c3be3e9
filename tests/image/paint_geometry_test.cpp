#include "image/paint_geometry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <vector>

#include "image/pixel.h"

namespace {

/// The outputs of one preparation over a destination of its own.
template <class Pixel>
struct Prepared : PaintGeometry {
  Prepared(CSize source, CSize dstSize, CPoint offset, CSize shown, CRect clip, int orientation,
           unsigned long background = 0)
      : PaintGeometry{},
        displayed(shown),
        pixels(static_cast<std::size_t>(std::max(0L, dstSize.cx) * std::max(0L, dstSize.cy))) {
    Pixel* first = nullptr;
    result = PreparePaintParameters(source, pixels.data(), dstSize, offset, displayed, clip,
                                    static_cast<ORIENTATION>(orientation), zoom, nDstCols, nDstRows, nSrcX0,
                                    nSrcX1, nSrcCols, nSrcY0, nDispX0, nDispX1, nDispY0, nDispY1, first,
                                    nDstStepX, nDstStepRow, background, bPainted);
    start = first - pixels.data();
  }

  int result = 0;
  CSize displayed;
  std::vector<Pixel> pixels;
  std::ptrdiff_t start = 0;
};
using PreparedM08 = Prepared<CPixelM08>;

const CRect kEverything(-1000, -1000, 1000, 1000);

TEST(PaintGeometry, FillsGreyWithTheMixedBackground) {
  const PreparedM08 m08(CSize(1, 1), CSize(3, 2), CPoint(50, 0), CSize(1, 1), kEverything, 0, 0xFF8000);
  for (const CPixelM08 pixel : m08.pixels) EXPECT_EQ(pixel.value, 127);
  const Prepared<CPixelM16> m16(CSize(1, 1), CSize(3, 2), CPoint(50, 0), CSize(1, 1), kEverything, 0,
                                0xFF8000);
  for (const CPixelM16 pixel : m16.pixels) EXPECT_EQ(pixel.value, 127) << "not scaled to 16 bits";
}

TEST(PaintGeometry, FillsColourWithTheBytesOfTheBackground) {
  const Prepared<CPixelC08> c08(CSize(1, 1), CSize(3, 2), CPoint(0, 0), CSize(3, 2), kEverything, 0,
                                0x99FF8001);
  for (const CPixelC08 pixel : c08.pixels) {
    EXPECT_EQ(pixel.red, 0xFF);
    EXPECT_EQ(pixel.green, 0x80);
    EXPECT_EQ(pixel.blue, 0x01);
  }
}

TEST(PaintGeometry, PaintsNothingOutsideTheDestination) {
  for (const CPoint offset : {CPoint(11, 0), CPoint(0, 11), CPoint(-11, 0), CPoint(0, -11)}) {
    const PreparedM08 p(CSize(10, 10), CSize(10, 10), offset, CSize(10, 10), kEverything, 0, 0x111111);
    EXPECT_EQ(p.result, 1);
    EXPECT_EQ(p.bPainted, 0);
    EXPECT_EQ(p.pixels[0].value, 0x11);
  }
}

TEST(PaintGeometry, PaintsNothingOutsideTheClip) {
  const PreparedM08 p(CSize(10, 10), CSize(10, 10), CPoint(0, 0), CSize(10, 10), CRect(11, 0, 12, 10), 0);
  EXPECT_EQ(p.result, 1);
  EXPECT_EQ(p.bPainted, 0);
}

TEST(PaintGeometry, AClipThatOnlyTouchesCountsAsVisible) {
  for (int orientation = 0; orientation < 8; ++orientation) {
    const PreparedM08 p(CSize(10, 10), CSize(20, 20), CPoint(0, 0), CSize(10, 10), CRect(10, 0, 20, 20),
                        orientation);
    EXPECT_EQ(p.bPainted, 1);
    EXPECT_EQ(orientation % 2 == 0 ? p.nDstCols : p.nDstRows, 0);
    EXPECT_EQ(orientation % 2 == 0 ? p.nDstRows : p.nDstCols, 10);
  }
}

TEST(PaintGeometry, ExchangesTheDisplayedSizeForOddOrientations) {
  for (int orientation = 0; orientation < 8; ++orientation) {
    const PreparedM08 p(CSize(100, 50), CSize(50, 100), CPoint(0, 0), CSize(50, 100), kEverything,
                        orientation);
    EXPECT_EQ(p.displayed, orientation % 2 != 0 ? CSize(100, 50) : CSize(50, 100));
    EXPECT_EQ(p.zoom, 1.0);
  }
}

TEST(PaintGeometry, ZoomComparesTheSumsOfTheSides) {
  EXPECT_EQ(PreparedM08(CSize(10, 30), CSize(5, 5), CPoint(0, 0), CSize(90, 10), kEverything, 0).zoom, 2.5);
}

TEST(PaintGeometry, ReadsOneColumnMoreUnlessTheRegionEndsWithThePicture) {
  // 10 columns shown as 20: the whole picture, and its columns 4 to 13.
  const PreparedM08 whole(CSize(10, 10), CSize(20, 20), CPoint(0, 0), CSize(20, 20), kEverything, 0);
  EXPECT_EQ(whole.nSrcX0, 0);
  EXPECT_EQ(whole.nSrcX1, 10);
  EXPECT_EQ(whole.nSrcCols, 10);
  const PreparedM08 part(CSize(10, 10), CSize(20, 20), CPoint(0, 0), CSize(20, 20), CRect(5, 7, 13, 20), 0);
  EXPECT_EQ(part.nSrcX0, 2) << "5 / 2";
  EXPECT_EQ(part.nSrcX1, 7) << "13 / 2 + 1";
  EXPECT_EQ(part.nSrcCols, 5);
  EXPECT_EQ(part.nSrcY0, 3) << "7 / 2";
}

TEST(PaintGeometry, MapsTheVisibleRegionIntoSourceOrientation) {
  // Visible: columns 3..10, rows 4..6 of a picture shown as 20 x 10.
  struct Row {
    int x0, x1, y0, y1;
  };
  const Row rows[8] = {{3, 11, 4, 7}, {4, 7, 9, 17}, {9, 17, 3, 6}, {3, 6, 3, 11},
                       {9, 17, 4, 7}, {3, 6, 9, 17}, {3, 11, 3, 6}, {4, 7, 3, 11}};
  for (int orientation = 0; orientation < 8; ++orientation) {
    const PreparedM08 p(CSize(9, 9), CSize(30, 30), CPoint(2, 1), CSize(20, 10), CRect(5, 5, 13, 8),
                        orientation);
    const Row& row = rows[orientation];
    EXPECT_EQ(p.nDispX0, row.x0) << orientation;
    EXPECT_EQ(p.nDispX1, row.x1) << orientation;
    EXPECT_EQ(p.nDispY0, row.y0) << orientation;
    EXPECT_EQ(p.nDispY1, row.y1) << orientation;
    EXPECT_EQ(p.nDstCols, row.x1 - row.x0);
    EXPECT_EQ(p.nDstRows, row.y1 - row.y0);
  }
}

TEST(PaintGeometry, StartsAndStepsByTheTable) {
  // The same region in a destination 30 wide: its top left corner is pixel (5, 5), it is 8 wide and 3 high.
  constexpr int w = 30;
  constexpr int corner = 5 * w + 5;
  struct Row {
    int start, stepX, advance;
  };
  const Row rows[8] = {{corner, 1, w},          {corner + 7, w, -1}, {corner + 2 * w + 7, -1, -w},
                       {corner + 2 * w, -w, 1}, {corner + 7, -1, w}, {corner + 2 * w + 7, -w, -1},
                       {corner + 2 * w, 1, -w}, {corner, w, 1}};
  for (int orientation = 0; orientation < 8; ++orientation) {
    const PreparedM08 p(CSize(9, 9), CSize(w, 30), CPoint(2, 1), CSize(20, 10), CRect(5, 5, 13, 8),
                        orientation);
    const Row& row = rows[orientation];
    EXPECT_EQ(p.start, row.start) << orientation;
    EXPECT_EQ(p.nDstStepX, row.stepX) << orientation;
    EXPECT_EQ(p.nDstStepRow, row.advance - row.stepX * p.nDstCols) << orientation;
  }
}

/// Walks a small destination with the two steps and looks every pixel up in the table of orientations.
TEST(PaintGeometry, TheWalkMeetsEveryDestinationPixelWithItsSourcePoint) {
  constexpr int kShownX = 5, kShownY = 3;
  for (int orientation = 0; orientation < 8; ++orientation) {
    for (const CRect& clip : {CRect(0, 0, 9, 9), CRect(2, 2, 5, 4), CRect(4, 1, 9, 9)}) {
      const CPoint offset(1, 2);
      const PreparedM08 p(CSize(6, 7), CSize(7, 6), offset, CSize(kShownX, kShownY), clip, orientation);
      std::ptrdiff_t at = p.start;
      int met = 0;
      for (int v = p.nDispY0; v < p.nDispY1; ++v) {
        for (int u = p.nDispX0; u < p.nDispX1; ++u) {
          const CPoint pixel(static_cast<int>(at % 7), static_cast<int>(at / 7));
          EXPECT_TRUE(clip.PtInRect(pixel));
          const int x = static_cast<int>(pixel.x - offset.x);
          const int y = static_cast<int>(pixel.y - offset.y);
          const int mx = kShownX - 1 - x;  // pixels, not edges: W - x of the edge is W - 1 - x of the pixel
          const int my = kShownY - 1 - y;
          const CPoint shown[8] = {{x, y}, {y, mx}, {mx, my}, {my, x}, {mx, y}, {my, mx}, {x, my}, {y, x}};
          EXPECT_EQ(CPoint(u, v), shown[orientation]) << orientation << " at " << x << ", " << y;
          at += p.nDstStepX;
          ++met;
        }
        at += p.nDstStepRow;
      }
      CRect visible;
      visible.IntersectRect(clip, CRect(1, 2, 6, 5));
      EXPECT_EQ(met, visible.Width() * visible.Height());
    }
  }
}

TEST(PaintGeometry, ShowsNothingOfImpossibleSizes) {
  const CSize good(4, 4);
  for (const tagSIZE bad : {tagSIZE{0, 4}, tagSIZE{4, 0}, tagSIZE{-4, 4}, tagSIZE{0, 0}, tagSIZE{4, LONG_MIN},
                            tagSIZE{1L << 31, 4}, tagSIZE{LONG_MAX, LONG_MAX}}) {
    const PreparedM08 source(bad, good, CPoint(0, 0), good, kEverything, 1);
    EXPECT_EQ(source.result, 1);
    EXPECT_EQ(source.bPainted, 0);
    EXPECT_EQ(source.start, 0);
    const PreparedM08 shown(good, good, CPoint(0, 0), bad, kEverything, 1);
    EXPECT_EQ(shown.bPainted, 0);
    EXPECT_EQ(shown.displayed, CSize(tagSIZE{bad.cy, bad.cx})) << "exchanged all the same";
  }
  EXPECT_EQ(PreparedM08(good, CSize(-3, 4), CPoint(0, 0), good, kEverything, 0).bPainted, 0);
  EXPECT_EQ(PreparedM08(good, good, CPoint(0, 0), good, kEverything, 8).bPainted, 0);
  EXPECT_EQ(PreparedM08(good, good, CPoint(0, 0), good, kEverything, INT_MIN).bPainted, 0);
}

TEST(PaintGeometry, MultipliesIn64Bits) {
  const int large = 2000000000;
  const PreparedM08 p(CSize(large, large), CSize(2, 2), CPoint(-(large - 2), -(large - 2)),
                      CSize(large, large), kEverything, 0);
  EXPECT_EQ(p.bPainted, 1);
  EXPECT_EQ(p.nSrcX0, large - 2);
  EXPECT_EQ(p.nSrcX1, large);
  EXPECT_EQ(p.nSrcY0, large - 2);
}

}  // namespace
