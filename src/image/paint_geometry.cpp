#include "image/paint_geometry.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "image/pixel.h"
#include "types/wrapping.h"

namespace {

constexpr int kMaxSide = std::numeric_limits<int>::max();

CPixelC08 backgroundPixel(unsigned long background, const CPixelC08* /*format*/) {
  return {static_cast<std::uint8_t>(background >> 16), static_cast<std::uint8_t>(background >> 8),
          static_cast<std::uint8_t>(background)};
}

/// An 8-bit grey. Quirk grey-background-unscaled: 16-bit destinations store it as it is.
template <class Grey>
Grey backgroundPixel(unsigned long background, const Grey* /*format*/) {
  const unsigned long sum =
      ((background >> 16) & 0xFF) + 2 * ((background >> 8) & 0xFF) + (background & 0xFF);
  return {static_cast<std::uint8_t>(sum >> 2)};
}

/// Moves against an offset; edges that no longer fit stay at the ends of the range, where
/// nothing is visible anyway.
long movedEdge(long edge, long offset) {
  long moved = 0;
  if (!__builtin_sub_overflow(edge, offset, &moved)) return moved;
  return offset < 0 ? std::numeric_limits<long>::max() : std::numeric_limits<long>::min();
}

CRect movedAgainst(const CRect& rect, CPoint offset) {
  CRect moved;
  moved.left = movedEdge(rect.left, offset.x);
  moved.top = movedEdge(rect.top, offset.y);
  moved.right = movedEdge(rect.right, offset.x);
  moved.bottom = movedEdge(rect.bottom, offset.y);
  return moved;
}

bool hasPixels(CSize size) {
  return size.cx > 0 && size.cy > 0 && size.cx <= kMaxSide && size.cy <= kMaxSide;
}

/// The visible region in source orientation, from the visible rectangle of a displayed picture of W x H.
void orientRegion(ORIENTATION orientation, const CRect& visible, CSize displayed, PaintGeometry& geometry) {
  const auto setColumns = [&](long from, long to) {
    geometry.nDispX0 = static_cast<int>(from);
    geometry.nDispX1 = static_cast<int>(to);
  };
  const auto setRows = [&](long from, long to) {
    geometry.nDispY0 = static_cast<int>(from);
    geometry.nDispY1 = static_cast<int>(to);
  };
  const long mirroredLeft = displayed.cx - visible.right;
  const long mirroredRight = displayed.cx - visible.left;
  const long mirroredTop = displayed.cy - visible.bottom;
  const long mirroredBottom = displayed.cy - visible.top;
  switch (orientation) {
    case ORIENTATION_AS_STORED:
      setColumns(visible.left, visible.right);
      setRows(visible.top, visible.bottom);
      break;
    case ORIENTATION_QUARTER_TURN:
      setColumns(visible.top, visible.bottom);
      setRows(mirroredLeft, mirroredRight);
      break;
    case ORIENTATION_HALF_TURN:
      setColumns(mirroredLeft, mirroredRight);
      setRows(mirroredTop, mirroredBottom);
      break;
    case ORIENTATION_THREE_QUARTERS:
      setColumns(mirroredTop, mirroredBottom);
      setRows(visible.left, visible.right);
      break;
    case ORIENTATION_MIRROR_LEFT_RIGHT:
      setColumns(mirroredLeft, mirroredRight);
      setRows(visible.top, visible.bottom);
      break;
    case ORIENTATION_OTHER_DIAGONAL:
      setColumns(mirroredTop, mirroredBottom);
      setRows(mirroredLeft, mirroredRight);
      break;
    case ORIENTATION_MIRROR_TOP_BOTTOM:
      setColumns(visible.left, visible.right);
      setRows(mirroredTop, mirroredBottom);
      break;
    case ORIENTATION_MAIN_DIAGONAL:
      setColumns(visible.top, visible.bottom);
      setRows(visible.left, visible.right);
      break;
  }
}

/// How the destination is walked: where in the visible region it starts, and its steps in pixels.
struct Walk {
  std::int64_t startRow, startColumn;
  int stepX, rowAdvance;
};

Walk walkFor(ORIENTATION orientation, int nx, int ny, int width) {
  switch (orientation) {
    case ORIENTATION_QUARTER_TURN:
      return {0, ny - 1, width, -1};
    case ORIENTATION_HALF_TURN:
      return {ny - 1, nx - 1, -1, -width};
    case ORIENTATION_THREE_QUARTERS:
      return {nx - 1, 0, -width, 1};
    case ORIENTATION_MIRROR_LEFT_RIGHT:
      return {0, nx - 1, -1, width};
    case ORIENTATION_OTHER_DIAGONAL:
      return {nx - 1, ny - 1, -width, -1};
    case ORIENTATION_MIRROR_TOP_BOTTOM:
      return {ny - 1, 0, 1, -width};
    case ORIENTATION_MAIN_DIAGONAL:
      return {0, 0, width, 1};
    case ORIENTATION_AS_STORED:
      break;
  }
  return {0, 0, 1, width};
}

int wrappedStepRow(const Walk& walk, int nx) {
  return wrappedDifference<int>(walk.rowAdvance, wrappedProduct<int>(walk.stepX, nx));
}

/// Everything but the filling. Returns the first painted pixel's distance from the destination's first pixel.
std::int64_t prepare(CSize srcSize, CSize dstSize, CPoint offset, CSize& displayedSize, CRect clip,
                     ORIENTATION orientation, PaintGeometry& geometry) {
  const CSize asShown = displayedSize;
  if (ExchangesSides(orientation)) std::swap(displayedSize.cx, displayedSize.cy);
  const double sourceSum = static_cast<double>(srcSize.cx) + static_cast<double>(srcSize.cy);
  const double displayedSum = static_cast<double>(displayedSize.cx) + static_cast<double>(displayedSize.cy);
  geometry = PaintGeometry{};
  geometry.zoom = sourceSum == 0 ? 0 : displayedSum / sourceSum;

  if (!hasPixels(srcSize) || !hasPixels(asShown) || !IsOrientation(orientation)) return 0;
  if (dstSize.cx > kMaxSide || dstSize.cy > kMaxSide) return 0;
  const CRect destination = movedAgainst(CRect(tagPOINT{0, 0}, dstSize), offset);
  const CRect shown(tagPOINT{0, 0}, asShown);
  const CRect movedClip = movedAgainst(clip, offset);
  CRect visible;
  if (!visible.IntersectRect(&shown, &destination)) return 0;
  if (!visible.IntersectRect(CRect(visible), movedClip)) return 0;
  geometry.bPainted = 1;

  PaintGeometry& g = geometry;
  orientRegion(orientation, visible, asShown, g);
  g.nDstCols = g.nDispX1 - g.nDispX0;
  g.nDstRows = g.nDispY1 - g.nDispY0;
  g.nSrcX0 = static_cast<int>(g.nDispX0 * srcSize.cx / displayedSize.cx);
  g.nSrcX1 =
      static_cast<int>(g.nDispX1 * srcSize.cx / displayedSize.cx) + (g.nDispX1 < displayedSize.cx ? 1 : 0);
  g.nSrcCols = g.nSrcX1 - g.nSrcX0;
  g.nSrcY0 = static_cast<int>(g.nDispY0 * srcSize.cy / displayedSize.cy);

  const Walk walk = walkFor(orientation, g.nDstCols, g.nDstRows, static_cast<int>(dstSize.cx));
  g.nDstStepX = walk.stepX;
  g.nDstStepRow = wrappedStepRow(walk, g.nDstCols);
  if (g.nDstCols == 0 || g.nDstRows == 0) return 0;  // nothing is stored, and the formula could point outside
  return (walk.startRow + (visible.top - destination.top)) * dstSize.cx + (visible.left - destination.left) +
         walk.startColumn;
}

}  // namespace

template <class Pixel>
int PreparePaintParameters(CSize srcSize, Pixel* dst, CSize dstSize, CPoint offset, CSize& displayedSize,
                           CRect clip, ORIENTATION orientation, double& zoom, int& nDstCols, int& nDstRows,
                           int& nSrcX0, int& nSrcX1, int& nSrcCols, int& nSrcY0, int& nDispX0, int& nDispX1,
                           int& nDispY0, int& nDispY1, Pixel*& pDstStart, int& nDstStepX, int& nDstStepRow,
                           unsigned long background, int& bPainted) {
  if (hasPixels(dstSize)) std::fill_n(dst, dstSize.cx * dstSize.cy, backgroundPixel(background, dst));

  PaintGeometry geometry;
  pDstStart = dst + prepare(srcSize, dstSize, offset, displayedSize, clip, orientation, geometry);
  zoom = geometry.zoom;
  nDstCols = geometry.nDstCols;
  nDstRows = geometry.nDstRows;
  nSrcX0 = geometry.nSrcX0;
  nSrcX1 = geometry.nSrcX1;
  nSrcCols = geometry.nSrcCols;
  nSrcY0 = geometry.nSrcY0;
  nDispX0 = geometry.nDispX0;
  nDispX1 = geometry.nDispX1;
  nDispY0 = geometry.nDispY0;
  nDispY1 = geometry.nDispY1;
  nDstStepX = geometry.nDstStepX;
  nDstStepRow = geometry.nDstStepRow;
  bPainted = geometry.bPainted;
  return 1;
}

template <class Pixel>
using Prepare = int(CSize, Pixel*, CSize, CPoint, CSize&, CRect, ORIENTATION, double&, int&, int&, int&, int&,
                    int&, int&, int&, int&, int&, int&, Pixel*&, int&, int&, unsigned long, int&);
template Prepare<CPixelM08> PreparePaintParameters<CPixelM08>;
template Prepare<CPixelM16> PreparePaintParameters<CPixelM16>;
template Prepare<CPixelC08> PreparePaintParameters<CPixelC08>;
