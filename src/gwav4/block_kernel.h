// The hot half of the decoder: coefficients of one order, many at a time.
//
// Every sub-stream is consumed in raster order of its order's coefficients, and none depends on another's
// bits. So the coefficients need not be rebuilt one by one: each bit position decides on a whole block of
// them in one go, 64 to a machine word.
#pragma once

#include <cstddef>
#include <cstdint>

#include "gwav4/bit_reader.h"

namespace zel::gwav4 {

/// A place in a block of memory, in bits; behind the block's end there are zeros for ever.
struct BitCursor {
  const unsigned char* bytes = nullptr;
  std::uint64_t position = 0;
  std::uint64_t bitCount = 0;
};

/// Where a significance stream stands, as CBitDecoder would, and what was read ahead of it: first the bits `begin` to `end`
/// of `ahead`, then zeros.
struct RunCursor {
  BitCursor bits;
  bool terminated = false;
  std::int64_t zeros = 0;
  /// Decisions: 1 for a coefficient that becomes significant. Each one's sign, 1 for minus, is `signsAt` bytes behind it.
  unsigned char* ahead = nullptr;
  std::size_t signsAt = 0;
  std::size_t begin = 0;
  std::size_t end = 0;
};

inline constexpr int kMostPositions = 32;

// The kernels use no class with inline functions, std::array among them: see kernels.h.

/// The sub-streams of one plane and order; both arrays are indexed by bit position.
struct OrderCursors {
  int top = -1;                ///< highest bit position; -1: nothing is coded
  int lowestSignificance = 0;  ///< lowest position with a significance stream; top + 1: none
  int lowestRefinement = -1;   ///< lowest position with a refinement stream; top: none
  RunCursor runs[kMostPositions];
  BitCursor refinements[kMostPositions];
};

/// Most coefficients of a block, a multiple of 64.
inline constexpr std::size_t kMostInBlock = 8192;

/// Bytes of RunCursor::ahead, and of the signs behind it, for blocks of up to `count` coefficients.
constexpr std::size_t bytesAhead(std::size_t count) {
  constexpr std::size_t kSlack =
      64;  // up to 160 decisions more, and what loads and stores touch behind the end
  return count / 8 + kSlack;
}

/// Working memory of one block; its contents mean nothing between two blocks. Coefficient i is bit i % 64 of word i / 64.
struct BlockScratch {
  static constexpr std::size_t kWords = kMostInBlock / 64;
  static constexpr std::size_t kSlack = 16;  ///< bytes that may be read or written behind the end

  std::uint64_t significant[kWords];
  std::uint64_t negative[kWords];
  std::uint64_t settled[kWords];                 ///< significant, with the mid-point set
  std::uint64_t planes[kMostPositions][kWords];  ///< magnitude bits, by position
  unsigned char refinements[kMostInBlock / 8 + kSlack];
};

}  // namespace zel::gwav4
