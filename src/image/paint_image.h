// The painter: a source of one pixel format into a destination buffer of another, at any
// size, place and orientation.
#pragma once

#include "image/pixel.h"
#include "types/orientation.h"
#include "types/types.h"

/// Paints `src` into `dst`; the arguments mean what they mean for CDicomImage::PaintImage. The published
/// name is _PaintImage; a leading underscore before a capital is reserved to the compiler, so the
/// underscore stands behind.
/// Accumulator  names the format of the sums: whole numbers that a double holds exactly, kept as such.
/// src  srcSize.cx * srcSize.cy pixels, rows on end.
/// dst  room for dstSize.cx * dstSize.cy pixels, all of which are written.
///      Quirk no-table-keeps-source-pixels: from CPixelM16 or CPixelC08 into CPixelM08 without a table, room
///      for that many source pixels.
///
/// Returns 1, also when nothing is visible; 0 for an averaging whose counters would be halved to nothing, and
/// when memory runs short: the destination then holds the background. Never throws.
template <class Source, class Accumulator, class Destination>
int PaintImage_(const Source* src, CSize srcSize, Destination* dst, CSize dstSize, CPoint offset,
                CSize displayedSize, CRect clip, ORIENTATION orientation, int unused, const void* table,
                unsigned long background, int mode);
