// Inverse reversible 5/3 lifting along one direction (Le Gall's filter, as in JPEG 2000), with halves rounded
// away from zero.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zel::gwav4 {

/// Half of v, a half rounded away from zero. Any int.
constexpr int roundedHalf(int v) {
  const auto bits = static_cast<std::uint32_t>(v);
  return static_cast<int>(bits - (v < 0 ? 1U : 0U) + 1U) >> 1;
}

/// A quarter of v, a half rounded away from zero. Any int.
constexpr int roundedQuarter(int v) {
  const auto bits = static_cast<std::uint32_t>(v);
  return static_cast<int>(bits - (v < 0 ? 1U : 0U) + 2U) >> 2;
}

/// The lifting steps on lines of samples. Sums are formed in 32 bits and wrap; results are stored as T.
///
/// Each step takes `count` samples that lie `step` elements apart in each of its lines; lines do not overlap.
/// A line of alternating low- and high-pass samples a[0], a[1], ... is inverted by: every even a[p] loses a
/// quarter of a[p-1] + a[p+1], then every odd a[p] gains half of a[p-1] + a[p+1]; beyond an end the sample on
/// the other side stands in.
template <class T>
struct CFilter5_3 {
  /// even -= a quarter of (before + after), the high-pass neighbours.
  static void lowerEven(T* even, const T* before, const T* after, std::size_t count, std::size_t step);
  /// even -= half of its only neighbour.
  static void lowerEvenAtEnd(T* even, const T* neighbour, std::size_t count, std::size_t step);
  /// odd += half of (before + after), the finished even neighbours.
  static void raiseOdd(T* odd, const T* before, const T* after, std::size_t count, std::size_t step);
  /// odd += its only neighbour.
  static void raiseOddAtEnd(T* odd, const T* neighbour, std::size_t count, std::size_t step);

  /// Inverts one line of `count` samples, `step` elements apart in `line`, and stores the result at out[0],
  /// out[outStep], ...; out may be line. scratch: `count` elements.
  static void invertLine(const T* line, std::size_t count, std::size_t step, T* out, std::size_t outStep,
                         T* scratch);
};

extern template struct CFilter5_3<short>;
extern template struct CFilter5_3<int>;

}  // namespace zel::gwav4
