// The coefficients of a block, bit position by bit position.
// Compiled once for each instruction set: see kernels.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "gwav4/numbers_body.h"
#include "gwav4/run_reader_body.h"

namespace zel::gwav4 {
namespace {

/// Where the bits of one position stand in memory.
struct PlaneInput {
  const unsigned char* refinements;
  std::uint64_t refinementsAt;
  const unsigned char* decisions;
  const unsigned char* signs;
  std::uint64_t decisionsAt;
};

/// Gives what the streams say at one position to the coefficients that it is for. Returns how many of them became
/// significant.
template <bool kRefined, bool kDecided>
[[gnu::noinline]] std::size_t readPlane(BlockScratch& block, std::size_t count, int position,
                                        const PlaneInput& input) {
  Word* const plane = block.planes[position];
  std::uint64_t refinementsAt = input.refinementsAt;
  std::uint64_t decisionsAt = input.decisionsAt;
  std::size_t found = 0;
  for (std::size_t w = 0; 64 * w < count; ++w) {
    const Word significant = block.significant[w];
    Word bits = 0;
    if constexpr (kRefined) {
      if (EI4_AVX2 || significant != 0) {
        bits = Depositor(significant).deposited(bitsAt(input.refinements, refinementsAt));
      }
      refinementsAt += countOnes(significant);
    }
    if constexpr (kDecided) {
      const Word open = ~significant & firstOnes(count - 64 * w);
      const Depositor depositor(open);
      const Word events = depositor.deposited(bitsAt(input.decisions, decisionsAt));
      block.negative[w] |= depositor.deposited(bitsAt(input.signs, decisionsAt));
      decisionsAt += countOnes(open);
      block.significant[w] = significant | events;
      found += countOnes(events);
      bits |= events;
    }
    plane[w] |= bits;
  }
  return found;
}

/// Where the refinement bits of `count` coefficients are, `significant` of which take one.
void takeRefinements(BitCursor& bits, std::size_t count, std::size_t significant, BlockScratch& block,
                     PlaneInput& input) {
  constexpr std::uint64_t kReadAhead = 72;  // by bitsAt
  if (bits.position + count + kReadAhead <= bits.bitCount) {
    input.refinements = bits.bytes;
    input.refinementsAt = bits.position;
  } else {
    copyBits(bits, significant, block.refinements);
    input.refinements = block.refinements;
  }
  bits.position += significant;
}

/// Where the decisions on `open` coefficients at `position` are. False: none of them becomes significant.
bool takeDecisions(OrderCursors& order, int position, std::size_t open, PlaneInput& input) {
  RunCursor& runs = order.runs[position];
  if (!hasAhead(runs, open)) readAhead(order, position, open);
  if (runs.begin == runs.end) {
    runs.zeros -= static_cast<std::int64_t>(open);
    return false;
  }
  input.decisions = runs.ahead;
  input.signs = runs.ahead + runs.signsAt;
  input.decisionsAt = runs.begin;
  runs.begin += open;
  return true;
}

/// Fills the masks from the streams. Returns one above the highest plane that has a bit.
int readPlanes(OrderCursors& order, std::size_t count, BlockScratch& block) {
  const std::size_t bytes = (count + 63) / 64 * sizeof(Word);
  std::memset(block.significant, 0, bytes);
  std::memset(block.negative, 0, bytes);
  for (int position = 0; position <= order.top; ++position) {
    std::memset(block.planes[position], 0, bytes);
  }

  const int lowest =
      order.lowestSignificance < order.lowestRefinement ? order.lowestSignificance : order.lowestRefinement;
  int planeEnd = 0;
  std::size_t open = count;
  for (int position = order.top; position >= lowest; --position) {
    PlaneInput input = {};
    const bool isRefined = position >= order.lowestRefinement && open < count;
    if (isRefined) {
      takeRefinements(order.refinements[position], count, count - open, block, input);
    }
    const bool isDecided =
        position >= order.lowestSignificance && takeDecisions(order, position, open, input);
    // What is significant above and refined no further has its mid-point already.
    const bool getsMidPoint = position >= 2 && position <= order.lowestRefinement;
    if (getsMidPoint) {
      if (position < order.lowestRefinement) {
        std::memcpy(block.settled, block.significant, bytes);
      } else {
        std::memset(block.settled, 0, bytes);
      }
    }
    if (isDecided) {
      open -= isRefined ? readPlane<true, true>(block, count, position, input)
                        : readPlane<false, true>(block, count, position, input);
    } else if (isRefined) {
      readPlane<true, false>(block, count, position, input);
    }
    if (open < count && planeEnd == 0) planeEnd = position + 1;
    if (getsMidPoint) {
      // Quirk mid-point-is-a-quarter: half of the step below the last position read, not half of all that is
      // unread.
      Word* const midPoint = block.planes[position - 2];
      for (std::size_t w = 0; 64 * w < count; ++w) midPoint[w] |= block.significant[w] & ~block.settled[w];
    }
  }
  return planeEnd;
}

template <class Numbers>
void readBlock(OrderCursors& order, std::size_t count, BlockScratch& block, typename Numbers::Lane* out) {
  const int planeEnd = readPlanes(order, count, block);
  for (std::size_t w = 0; 64 * w < count; ++w, out += 64) {
    if (block.significant[w] == 0) {
      std::memset(out, 0, 64 * sizeof *out);
    } else {
      Numbers::store(block, w, planeEnd, out);
    }
  }
}

}  // namespace
}  // namespace zel::gwav4
