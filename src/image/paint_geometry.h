// Which part of a destination a displayed picture covers, which source pixels lie behind
// it, and how to walk both.
#pragma once

#include "types/orientation.h"
#include "types/types.h"

/// Clears the destination to the background and prepares the walk over the visible region: source row by
/// source row, left to right, while the destination steps turn and mirror the picture.
///
/// In:
/// srcSize        pixels of the source.
/// dst, dstSize   the destination; all its pixels are filled with `background`, even when nothing is visible.
/// offset         where the displayed picture's top left corner lies in the destination.
/// displayedSize  the size at which the whole source is shown, in destination orientation. Also out: the same
///                in source orientation, its sides exchanged for odd orientations.
/// clip           what may be painted, in destination pixels.
/// background     0xRRGGBB; grey destinations, also those of 16 bits, get (R + 2G + B) >> 2.
///
/// Out:
/// zoom              displayed size by source size, sides added up.
/// nDstCols          painted pixels of a source-oriented row; 0 for a clip that only touches the picture.
/// nDstRows          the number of such rows; likewise.
/// nSrcX0, nSrcX1    first source column, and one past the last, widened by one while the region
///                   ends inside the picture.
/// nSrcCols          nSrcX1 - nSrcX0.
/// nSrcY0            first source row.
/// nDispX0 .. Y1     the visible region in displayed coordinates of the source orientation.
/// pDstStart         the destination of the first painted pixel.
/// nDstStepX         from one painted pixel to the next, in destination pixels.
/// nDstStepRow       from the place after a row's last pixel to the next row's first. Wraps at 32 bits for
///                   pictures of more pixels than an int counts, so that nDstStepRow + nDstStepX * nDstCols,
///                   wrapped, is always right.
/// bPainted          1 when there is a visible region; else 0, with the other outputs from nDstCols on 0 and
///                   pDstStart at `dst`.
///
/// A source or displayed side outside 1..INT_MAX, a destination side above INT_MAX or an orientation outside
/// 0..7 make nothing visible. A negative destination side stands for no pixels. Always returns 1.
template <class Pixel>
int PreparePaintParameters(CSize srcSize, Pixel* dst, CSize dstSize, CPoint offset, CSize& displayedSize,
                           CRect clip, ORIENTATION orientation, double& zoom, int& nDstCols, int& nDstRows,
                           int& nSrcX0, int& nSrcX1, int& nSrcCols, int& nSrcY0, int& nDispX0, int& nDispX1,
                           int& nDispY0, int& nDispY1, Pixel*& pDstStart, int& nDstStepX, int& nDstStepRow,
                           unsigned long background, int& bPainted);

/// The outputs above under one roof, for the painting loops.
struct PaintGeometry {
  double zoom;
  int nDstCols, nDstRows;
  int nSrcX0, nSrcX1, nSrcCols, nSrcY0;
  int nDispX0, nDispX1, nDispY0, nDispY1;
  int nDstStepX, nDstStepRow;
  int bPainted;
};
