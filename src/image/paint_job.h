// What the painting loops share: the source, the prepared walk over it, and where the rows go.
#pragma once

#include "image/paint_geometry.h"
#include "image/row_sink.h"
#include "types/types.h"

/// One painting with something to paint: geometry.nDstCols and nDstRows are at least 1.
/// Borrows all it points to.
template <class Source>
struct PaintJob {
  const Source* source;
  CSize sourceSize;     ///< pixels, both sides 1..INT_MAX
  CSize displayedSize;  ///< pixels, in source orientation, both sides 1..INT_MAX
  PaintGeometry geometry;
  const RowSink<Source>& sink;
};
