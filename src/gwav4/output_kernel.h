// From rows of samples to packed pixels.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zel::gwav4 {

/// One row of each plane of a picture; the second and third are null for grey. With their samples p0, p1, p2 and
/// g = p0 - ((p1 + p2) >> 2), the reversible colour transform of JPEG 2000, the components of a colour are p1 + g, g,
/// p2 + g. Sums wrap at 32 bits.
template <class T>
struct SampleRows {
  const T* planes[3];
};

/// Each sample or component is clamped to [0, 2^bits - 1] first if bits > 0; then its low bits are stored.
template <class T>
struct OutputKernel {
  /// 8 bits each.
  void (*storeGrey8)(const T* samples, std::size_t count, int bits, std::uint8_t* out);
  /// 16 bits each, in host byte order; `out` may be `samples` when these have 16 bits.
  void (*storeGrey16)(const T* samples, std::size_t count, int bits, std::uint16_t* out);
  /// Three components of 8 bits each.
  void (*storeColour)(const SampleRows<T>& rows, std::size_t count, int bits, std::uint8_t* out);
  /// Adds samples to sums, which must not overflow.
  void (*addGrey)(const T* samples, std::size_t count, std::int32_t* sums);
  /// Adds components to three rows of `count` sums each.
  void (*addColour)(const SampleRows<T>& rows, std::size_t count, std::int32_t* sums);
  /// means[i] = the mean, toward zero, of step x step samples whose columns add up to the `step` sums from
  /// sums[step * i] on; step is 2, 4 or 8. `means` may be `sums`.
  void (*reduceSums)(const std::int32_t* sums, std::size_t count, int step, std::int32_t* means);
};

}  // namespace zel::gwav4
