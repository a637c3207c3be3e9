// The hot loops of averaging and blending: rows weighted into sums, sums of columns weighted into pixels.
//
// All numbers are whole, not negative and below 2^53, so doubles hold them exactly and the order of adding
// does not matter. The quotients are below 2^16 and the divisors at most 2^25; see TruncatingDivision.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixel.h"

/// Divides whole numbers by one divisor, truncating, for quotients below 2^16 and divisors up to 2^25.
///
/// The multiplication by a reciprocal is exact: sum + 0.5 lies half a unit or more from every multiple of the
/// divisor, so (sum + 0.5) / divisor stays 2^-26 or more away from a whole number, while the roundings of the
/// reciprocal and of a product up to 2^16 move it by less than 2^-35.
struct TruncatingDivision {
  static constexpr std::int64_t kLargestDivisor = std::int64_t{1} << 25;

  double reciprocal;

  static TruncatingDivision By(std::int64_t divisor) { return {1.0 / static_cast<double>(divisor)}; }
  int operator()(double sum) const { return static_cast<int>((sum + 0.5) * reciprocal); }
};

/// The rows behind a destination row: `first`, then `full` rows from `fullBegin` on, then `last`. Rows of
/// weight 0 are not read and may be null; at least one row has a weight.
template <class Component>
struct WeightedRows {
  const Component* first;
  std::int64_t firstWeight;
  const Component* fullBegin;
  std::ptrdiff_t stride;  ///< from a row to the next, in components
  std::int64_t full;
  std::int64_t fullWeight;  ///< of each of them
  const Component* last;
  std::int64_t lastWeight;
};

/// The columns behind the pixels of a destination row: `taps` of them from firsts[i] on for pixel i.
struct WeightedColumns {
  static constexpr int kMostTaps = 16;
  /// Grey pixels take their columns by two or by fours, where need be with the weight 0.
  static constexpr int TapsFor(int most, int components) {
    if (most <= 2) return 2;
    return components == 1 ? (most + 3) / 4 * 4 : most;
  }

  int taps;  ///< as TapsFor gives them
  std::size_t pixels;
  const int* firsts;
  const double* weights;  ///< `taps` for each pixel
  TruncatingDivision divide;
};

/// Sums that a blend reads behind those of the last column that has a weight.
inline constexpr std::size_t kSumsReadAhead = 3 * WeightedColumns::kMostTaps + 1;

struct PaintKernels {
  /// sums[i] = component i of all rows, each times the row's weight, for i below `count`.
  void (*sumRows8)(const WeightedRows<std::uint8_t>& rows, std::size_t count, double* sums);
  void (*sumRows16)(const WeightedRows<std::uint16_t>& rows, std::size_t count, double* sums);
  /// Weighs, divides and truncates. `sums` has a number for each component of each column.
  void (*blendM08)(const WeightedColumns& columns, const double* sums, CPixelM08* values);
  void (*blendM16)(const WeightedColumns& columns, const double* sums, CPixelM16* values);
  void (*blendC08)(const WeightedColumns& columns, const double* sums, CPixelC08* values);
};

const PaintKernels& portablePaintKernels();
/// Null where the processor or the build lacks it.
const PaintKernels* avx2PaintKernels();

/// The fastest of this processor, chosen once.
const PaintKernels& paintKernels();

inline void SumRows(const WeightedRows<std::uint8_t>& rows, std::size_t count, double* sums) {
  paintKernels().sumRows8(rows, count, sums);
}
inline void SumRows(const WeightedRows<std::uint16_t>& rows, std::size_t count, double* sums) {
  paintKernels().sumRows16(rows, count, sums);
}
inline void Blend(const WeightedColumns& columns, const double* sums, CPixelM08* values) {
  paintKernels().blendM08(columns, sums, values);
}
inline void Blend(const WeightedColumns& columns, const double* sums, CPixelM16* values) {
  paintKernels().blendM16(columns, sums, values);
}
inline void Blend(const WeightedColumns& columns, const double* sums, CPixelC08* values) {
  paintKernels().blendC08(columns, sums, values);
}
