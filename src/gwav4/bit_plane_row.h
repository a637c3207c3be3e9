// The hot loop of the decoder: one row's coefficients of one order, bit position by bit position.
//
// Every sub-stream is consumed in raster order of its order's coefficients and no sub-stream depends on
// another's bits, so a row's coefficients need not be rebuilt one by one: each bit position takes the whole
// row's events and refinement bits in one go, 64 coefficients to a machine word.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "gwav4/bit_decoder.h"

namespace zel::gwav4 {

/// The sub-streams of one plane and order; coders and streamers are indexed by bit position.
struct OrderStreams {
  CBitDecoder* coders;
  CBitInfiniteReader* streamers;
  int top;                 ///< highest bit position; -1: nothing is coded
  int lowestSignificance;  ///< lowest position with a coder; top + 1: none
  int lowestRefinement;    ///< lowest position with a streamer; top: none
};

/// Memory for one row's bits: masks with a bit a coefficient, and their arithmetic.
class BitPlaneRow {
 public:
  /// longest: the most coefficients that a row will have.
  /// positions: bit positions of the decoder, at most 32.
  BitPlaneRow(int longest, int positions);

  /// Reads `count` coefficients and stores them, mid-points of what was not read added, at out[0], out[step],
  /// ... Coefficients that stay 0 are not written: the row must hold zeros.
  template <class T>
  void decode(const OrderStreams& streams, int count, T* out, int step);

 private:
  std::size_t wordsPerRow;
  std::vector<std::uint64_t> masks;
};

/// One row's masks, each of `words` words; coefficient i is bit i % 64 of word i / 64.
struct RowMasks {
  std::size_t words;
  std::uint64_t* significant;
  std::uint64_t* negative;
  std::uint64_t* planes;  ///< magnitude bits of position b: planes + b * words
};

/// The two halves of the work, by what the processor can do.
struct RowKernel {
  /// Fills the masks, which must be clear, from the streams.
  void (*readRow)(const OrderStreams& streams, int count, const RowMasks& masks);
  /// Stores the coefficients of the masks' words that have any; positions: how many planes can be set.
  void (*store16)(const RowMasks& masks, int count, int positions, short* out, int step);
  void (*store32)(const RowMasks& masks, int count, int positions, int* out, int step);
};

const RowKernel& portableRowKernel();
/// Null where the processor or the build lacks it.
const RowKernel* bmi2RowKernel();

}  // namespace zel::gwav4
