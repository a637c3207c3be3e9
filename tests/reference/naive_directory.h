// The preamble and the chunk directory: which sub-stream starts where.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "reference/naive_bits.h"
#include "reference/naive_coder.h"

namespace ei4::test {

inline constexpr int kOrders = 9;
inline constexpr int kMaxPositions = 32;

/// What the stream says about one decomposition order of one plane.
struct NaiveOrder {
  int nextSignificance = -1;  ///< position of the significance chunk that would come next
  int nextRefinement = -2;    ///< position of the refinement chunk that would come next
  std::array<NaiveCoder, kMaxPositions> coders;
  std::array<NaiveBits, kMaxPositions> refinements;
};

struct NaiveDirectory {
  int status = 0;     ///< 0 complete, 4 cut, 128 refused
  bool empty = true;  ///< nothing of the coefficients can be read: the picture is zero
  int top = -1;
  int levels = 0;
  std::array<std::array<NaiveOrder, kOrders>, 3> orders;  ///< [plane][order]
};

struct NaiveLayout {
  std::int64_t fullWidth = 0;  ///< of the stream, before any level is left out
  std::int64_t fullHeight = 0;
  int planes = 1;
  int positions = 16;  ///< bit positions that a coefficient has: 16 or 32
  int skipLevels = 0;
  bool sizeMode = false;  ///< the length fields of "GW40"
};

/// Reads it from `coded`, the bytes behind the header. A positive `chunkLimit` cuts it after that many
/// chunks.
void readDirectory(std::span<const std::uint8_t> coded, const NaiveLayout& layout, int chunkLimit,
                   NaiveDirectory& directory);

}  // namespace ei4::test
