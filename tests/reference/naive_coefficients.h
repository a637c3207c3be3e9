// The coefficients of one plane, visited in the stream's order and rebuilt one by one.
#pragma once

#include <cstdint>
#include <vector>

#include "reference/naive_directory.h"

namespace ei4::test {

/// Samples of one plane, row by row, as wide as the decoder stores them.
struct NaivePlane {
  int width = 0;
  int height = 0;
  int storageBits = 16;  ///< 16 or 32: a stored sample keeps that many low bits
  std::vector<std::int32_t> samples;

  std::int32_t& at(int x, int y) {
    return samples[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                   static_cast<std::size_t>(x)];
  }
  std::int32_t at(int x, int y) const {
    return samples[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                   static_cast<std::size_t>(x)];
  }
  void store(int x, int y, std::int64_t value) {
    at(x, y) = storageBits == 16 ? static_cast<std::int16_t>(value) : static_cast<std::int32_t>(value);
  }
};

/// Fills `plane` with the coefficients of plane number `index`; steps the directory's readers.
/// Stops behind row `lastRow` when that is a row at all.
/// Returns false when it stopped there.
bool scanPlane(NaiveDirectory& directory, int index, int skipLevels, std::int64_t lastRow, NaivePlane& plane);

}  // namespace ei4::test
