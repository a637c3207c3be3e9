// The weights of the few source columns behind each destination pixel, made once for all rows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "image/paint_kernels.h"

/// Collects the weights pixel by pixel, then blends rows with them.
class ColumnBlend {
 public:
  /// most        columns that one pixel can take, 1 to WeightedColumns::kMostTaps.
  /// components  of a pixel.
  /// pixels      how many will be added.
  /// divisor     of the weighted sums, at most TruncatingDivision::kLargestDivisor.
  ColumnBlend(int most, int components, std::size_t pixels, std::int64_t divisor)
      : m_taps(WeightedColumns::TapsFor(most, components)), m_divisor(divisor) {
    m_firsts.reserve(pixels);
    m_weights.reserve(pixels * static_cast<std::size_t>(m_taps));
  }

  /// Appends a pixel. Returns the weights of the column `first` and those behind it, all 0, to be filled in
  /// before the next pixel is added.
  double* Add(int first) {
    m_firsts.push_back(first);
    m_weights.resize(m_weights.size() + static_cast<std::size_t>(m_taps));
    return m_weights.data() + m_weights.size() - m_taps;
  }

  /// Writes one row. sums: a number for each component of each column, and kSumsReadAhead more, finite ones.
  template <class Source>
  void Blend(const double* sums, Source* values) const {
    ::Blend({m_taps, m_firsts.size(), m_firsts.data(), m_weights.data(), TruncatingDivision::By(m_divisor)},
            sums, values);
  }

 private:
  int m_taps;
  std::int64_t m_divisor;
  std::vector<int> m_firsts;
  std::vector<double> m_weights;
};
