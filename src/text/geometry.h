// Small questions about sizes, lines and ovals. Every value has a defined answer: sums of 64-bit fields wrap.
#pragma once

#include "types/orientation.h"
#include "types/types.h"

/// A way across the picture as stored, turned and mirrored with it: signs and sides are exchanged. Values
/// that are no orientation change nothing.
CSize OrientSizeForw(CSize size, ORIENTATION orientation);

/// Undoes OrientSizeForw.
CSize OrientSizeBack(CSize size, ORIENTATION orientation);

/// The size zoomed, rounded by adding a half and truncating toward zero, with sides exchanged for odd values
/// of the orientation. A side that does not fit into an int, or is not a number, becomes INT_MIN.
CSize Src2Dst(CSize size, double zoomX, double zoomY, ORIENTATION orientation);

/// True when the segment from a to b touches the rectangle, which is normalised first; never for one without
/// any pixel. Crossings are rounded down along the segment, so one that passes less than a pixel behind the
/// last row or column still touches.
/// Quirk crossing-keeps-low-word: a crossing is compared by its low 32 bits.
bool LineInRect(CRect rect, CPoint a, CPoint b);

/// True when the ellipse, filled, touches the rectangle, which is normalised first; never for one without any
/// pixel. Judged at the pixel nearest to the center in both directions.
bool OvalInRect(CRect rect, CPoint center, CSize halfAxes);
