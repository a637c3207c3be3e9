// Whether a picture is the committed one, but for the rasteriser of its text.
#pragma once

#include <cstddef>
#include <vector>

#include "gallery/cell_list.h"
#include "report/drawing.h"

namespace ei4::test {

/// The part of a picture in the box. Throws std::out_of_range when the box is not inside.
Raster cutOut(const Raster& picture, const Box& box);

struct Difference {
  std::size_t pixels = 0;      ///< that differ, outside of all texts
  std::size_t textPixels = 0;  ///< that differ, inside of one; these may
  std::size_t texts = 0;       ///< texts that differ by more than their tolerance
  Raster shown;                ///< expected, actual, and where they differ, side by side

  bool any() const { return pixels != 0 || texts != 0; }
};

/// Compares two pictures. Every pixel counts, except in the boxes of `texts`: there the rasteriser of the glyphs
/// may be another one, which shades their edges differently or puts a stroke into the next row. Such a text
/// passes when, with each pixel averaged with its neighbours, it differs by at most half of what moving it by
/// three pixels makes. So it cannot be missing or stand elsewhere by more than a pixel or two, but it could be a
/// similar one.
/// Throws std::runtime_error when the pictures are not of one size, std::out_of_range when a box is not inside.
Difference compare(const Raster& actual, const Raster& expected, const std::vector<Box>& texts);

}  // namespace ei4::test
