// Part of a row of pixels, zero where the picture has none.
#pragma once

#include <algorithm>
#include <cstdint>

#include "types/types.h"

/// Gives `count` pixels of row `y` from column `x` on.
/// buffer   the pixels of `size`, rows on end without padding; may be null when a side of `size` is 0.
/// x, y     may lie anywhere: columns and rows outside the picture read as 0.
/// scratch  room for `count` pixels; written only when the answer is not wholly inside the picture.
/// Returns a pointer straight into the buffer when the whole span lies inside it, else `scratch`. Read only.
template <class Pixel>
const Pixel* GetImageLine(const Pixel* buffer, CSize size, int x, int y, int count, Pixel* scratch) {
  const long width = size.cx;
  const bool rowInside = y >= 0 && y < size.cy;
  const bool spanInside = x >= 0 && x < width && std::int64_t{x} + count <= width;
  const Pixel* row = rowInside && width > 0 ? buffer + std::int64_t{y} * width : nullptr;
  if (spanInside && row != nullptr) return row + x;

  if (count > 0) std::fill_n(scratch, count, Pixel{});
  if (row == nullptr) return scratch;
  // Both ends count: the copy stops at the end of the row and at the end of the scratch row.
  const std::int64_t padding = x < 0 ? -std::int64_t{x} : 0;
  const std::int64_t first = x < 0 ? 0 : x;
  const std::int64_t copied = std::min<std::int64_t>(width - first, count - padding);
  if (copied > 0) std::copy_n(row + first, copied, scratch + padding);
  return scratch;
}
