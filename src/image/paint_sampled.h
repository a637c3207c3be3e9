// Painting that takes each destination pixel from one source pixel.
#pragma once

#include <vector>

#include "image/paint_job.h"

/// The source columns (or rows) behind consecutive destination pixels, never falling. What lies at the
/// source's size is outside and reads as 0.
using Samples = std::vector<int>;

/// Paints the picture whose pixel (i, j) is the source's pixel (columns[i], rows[j]): one sample for every
/// painted column and row, spanning no more source columns than an int counts. May throw std::bad_alloc.
template <class Source>
void PaintSampled(const PaintJob<Source>& job, const Samples& columns, const Samples& rows);

/// Nearest sample at any scale, by exact integer stepping. May throw std::bad_alloc.
template <class Source>
void PaintNearest(const PaintJob<Source>& job);
