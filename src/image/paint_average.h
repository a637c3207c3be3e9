// Painting that shrinks: every destination pixel is the mean of the source pixels that it covers.
#pragma once

#include "image/paint_job.h"

/// Averages by area, or replicates pixels when the zoom is a whole number. Columns and rows outside the
/// source count as 0.
/// Returns 1; 0, nothing painted, when keeping the sums small would halve the displayed size to nothing
/// (displays of a few pixels of a source with more than 0x1010100). May throw std::bad_alloc.
template <class Source>
int PaintAveraged(const PaintJob<Source>& job);
