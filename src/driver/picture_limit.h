// How large a picture an input may claim. A header of a few bytes, a size on the command line next to a short file
// and a line of a report can all name gigabytes of pixels.
#pragma once

#include <cstdint>

#include "types/types.h"

namespace ei4 {

/// Pixels that any input may claim, however short it is: 64 megapixels, twice what the largest detectors make.
constexpr std::int64_t kPixelsForAnyInput = std::int64_t{1} << 26;

/// Pixels beyond that take at least one byte of input for this many. Compressed without loss a picture holds
/// some 50 to 200 bytes for as many pixels.
constexpr std::int64_t kPixelsForEachByte = 256;

/// Pixels of a picture whose size is the report's own: MagickCore holds such a picture twice, at 8 bytes a pixel, and
/// by the limits that it usually comes with can write no more.
constexpr std::int64_t kPixelsOfAReport = 60'000'000;

/// True when both sides are at least 0 and there are at most `most` pixels.
constexpr bool hasAtMost(CSize size, std::int64_t most) {
  if (size.cx < 0 || size.cy < 0) return false;
  return size.cx == 0 || size.cy <= most / size.cx;
}

/// Whether an input that holds `bytes` (0 or more) may claim a picture of this size.
constexpr bool inputMayClaim(CSize size, std::int64_t bytes) {
  if (hasAtMost(size, kPixelsForAnyInput)) return true;
  const std::int64_t most = INT64_MAX / kPixelsForEachByte;
  return hasAtMost(size, (bytes < most ? bytes : most) * kPixelsForEachByte);
}

}  // namespace ei4
