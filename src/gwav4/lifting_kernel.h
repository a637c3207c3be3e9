// The other hot half of the decoder: the inverse reversible 5/3 lifting of JPEG 2000 (Le Gall's filter), with
// halves rounded away from zero, on whole rows.
//
// A line of alternating low- and high-pass samples a[0], a[1], ... is inverted by: every even a[p] loses a
// quarter of a[p-1] + a[p+1], then every odd a[p] gains half of a[p-1] + a[p+1]; beyond an end the sample on
// the other side stands in.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zel::gwav4 {

/// In 16 bits all sums are exact while coefficients have no more bits than these and every sample on the way to the
/// picture is within these limits.
inline constexpr int kNarrowPositions = 13;
inline constexpr int kLeastNarrow = -(1 << 14);
inline constexpr int kMostNarrow = (1 << 14) - 2;

/// The steps on rows of `count` samples each. Behind a row kRowSlack more samples must be readable, and writable where a
/// row is written: what they hold is unspecified afterwards. Rows do not overlap.
/// False: a sample left the limits for 16 bits, and the picture must be made with wider ones.
template <class Lane>
struct LiftingKernel {
  /// even = from - a quarter of (before + after), its high-pass neighbours; even may be from.
  bool (*lowerEven)(Lane* even, const Lane* from, const Lane* before, const Lane* after, std::size_t count);
  /// even = from - half of its only neighbour; even may be from.
  bool (*lowerEvenAtEnd)(Lane* even, const Lane* from, const Lane* neighbour, std::size_t count);
  /// odd += half of (before + after), the finished even neighbours.
  bool (*raiseOdd)(Lane* odd, const Lane* before, const Lane* after, std::size_t count);
  /// odd += its only neighbour.
  bool (*raiseOddAtEnd)(Lane* odd, const Lane* neighbour, std::size_t count);
  /// Inverts one row of `count` samples: its (count + 1) / 2 low-pass samples, which are used up, and its count / 2
  /// high-pass ones become out[0], out[1], ... The odd ones of these are right, but may lie beyond the limits: the next
  /// level's lowering notices it where that matters.
  bool (*invertRow)(Lane* low, const Lane* high, std::size_t count, Lane* out);
  /// Takes a row apart: even[i] = row[2i], odd[i] = row[2i + 1].
  void (*split)(const Lane* row, std::size_t count, Lane* even, Lane* odd);
};

inline constexpr std::size_t kRowSlack = 32;

}  // namespace zel::gwav4
