// The view of a report picture: how large the image is shown, where, and which part of it.
#pragma once

#include "types/types.h"

class CAnnotationSet;

/// Refits a view to a box: the visible clip is scaled until it just fits, and its centre comes to lie at the box's
/// centre. All in display pixels.
/// offset       in and out, where the image's corner lies
/// displaySize  in and out, the size at which the whole image is shown
/// clip         size of the visible part before
/// target       the box
/// Halves and products are truncated toward zero. Returns false, nothing changed, when a side of the clip or
/// the box is below 1 or a result does not fit an int.
bool CountImageSizes(CPoint& offset, CSize& displaySize, CSize clip, CSize target);

/// Settles how the picture of `set` is to be shown, once its report has been read: fitted into `geometry`, or as
/// reported for (0, 0). Without a "clip" line the whole image is shown, by default in 128 x 128.
/// Returns false when there is no such view (see CountImageSizes). A view that is kept as reported is not
/// looked at.
bool FitReportView(CAnnotationSet& set, CSize geometry);
