#include "image/paint_image.h"

#include <cstddef>
#include <new>

#include "image/paint_average.h"
#include "image/paint_geometry.h"
#include "image/paint_interpolate.h"
#include "image/paint_job.h"
#include "image/paint_sampled.h"
#include "image/row_sink.h"
#include "types/wrapping.h"

namespace {

/// From a row's first pixel to the next row's. The step after the last pixel may have
/// wrapped; their sum wraps back.
std::ptrdiff_t rowAdvance(const PaintGeometry& g) {
  return wrappedSum<int>(g.nDstStepRow, wrappedProduct<int>(g.nDstStepX, g.nDstCols));
}

template <class Source>
int paint(const PaintJob<Source>& job, int mode) {
  if (mode == 0) {
    PaintNearest(job);
    return 1;
  }
  if (job.sourceSize.cx > job.displayedSize.cx || job.sourceSize.cy > job.displayedSize.cy) {
    return PaintAveraged(job);
  }
  PaintInterpolated(job);
  return 1;
}

}  // namespace

template <class Source, class Accumulator, class Destination>
int PaintImage_(const Source* src, CSize srcSize, Destination* dst, CSize dstSize, CPoint offset,
                CSize displayedSize, CRect clip, ORIENTATION orientation, int /*unused*/, const void* table,
                unsigned long background, int mode) {
  PaintGeometry g{};
  Destination* start = nullptr;
  PreparePaintParameters(srcSize, dst, dstSize, offset, displayedSize, clip, orientation, g.zoom, g.nDstCols,
                         g.nDstRows, g.nSrcX0, g.nSrcX1, g.nSrcCols, g.nSrcY0, g.nDispX0, g.nDispX1,
                         g.nDispY0, g.nDispY1, start, g.nDstStepX, g.nDstStepRow, background, g.bPainted);
  if (g.bPainted == 0 || g.nDstCols == 0 || g.nDstRows == 0) return 1;
  try {
    const DestinationWalk walk{start - dst, g.nDstStepX, rowAdvance(g), g.nDstCols, g.nDstRows};
    const auto sink = MakeRowSink<Source>(dst, walk, table);
    return paint<Source>({src, srcSize, displayedSize, g, *sink}, mode);
  } catch (const std::bad_alloc&) {
    return 0;
  }
}

template <class Source, class Destination>
using Paint = int(const Source*, CSize, Destination*, CSize, CPoint, CSize, CRect, ORIENTATION, int,
                  const void*, unsigned long, int);
template Paint<CPixelM08, CPixelM08> PaintImage_<CPixelM08, CPixelDDD, CPixelM08>;
template Paint<CPixelM08, CPixelM16> PaintImage_<CPixelM08, CPixelDDD, CPixelM16>;
template Paint<CPixelM08, CPixelC08> PaintImage_<CPixelM08, CPixelDDD, CPixelC08>;
template Paint<CPixelM16, CPixelM08> PaintImage_<CPixelM16, CPixelDDD, CPixelM08>;
template Paint<CPixelM16, CPixelM16> PaintImage_<CPixelM16, CPixelDDD, CPixelM16>;
template Paint<CPixelM16, CPixelC08> PaintImage_<CPixelM16, CPixelDDD, CPixelC08>;
template Paint<CPixelC08, CPixelM08> PaintImage_<CPixelC08, CPixelCCC, CPixelM08>;
template Paint<CPixelC08, CPixelM16> PaintImage_<CPixelC08, CPixelCCC, CPixelM16>;
template Paint<CPixelC08, CPixelC08> PaintImage_<CPixelC08, CPixelCCC, CPixelC08>;
