// Painting that enlarges: every destination pixel is blended from the four source pixels around it.
#pragma once

#include "image/paint_job.h"

/// Interpolates bilinearly; at (about) the source's own size it copies. For displays not smaller
/// than the source in either direction. Columns and rows outside the source read as its edges.
/// May throw std::bad_alloc.
template <class Source>
void PaintInterpolated(const PaintJob<Source>& job);
