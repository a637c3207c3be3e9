// From bit planes to numbers.
// Compiled once for each instruction set: see kernels.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "gwav4/bits_body.h"

namespace zel::gwav4 {
namespace {

using Bytes16 = unsigned char __attribute__((vector_size(16)));
using Pairs8 = std::uint16_t __attribute__((vector_size(16)));
using Quads4 = std::uint32_t __attribute__((vector_size(16)));
using Words2 = Word __attribute__((vector_size(16)));

#if EI4_AVX2
using Words4 = Word __attribute__((vector_size(32)));
#endif

/// Each word's bits as a matrix of 8 x 8, mirrored at its diagonal.
template <class Words>
inline Words transposed(Words x) {
  const auto exchange = [&x](Word where, int distance) {
    const Words moved = (x ^ (x >> distance)) & where;
    x ^= moved ^ (moved << distance);
  };
  exchange(0x00AA00AA00AA00AA, 7);
  exchange(0x0000CCCC0000CCCC, 14);
  exchange(0x00000000F0F0F0F0, 28);
  return x;
}

/// Bit i of bytes[c] is bit c of words[i].
inline void transpose(const Word (&words)[8], unsigned char* bytes) {
  // First the bytes: eight words of a byte for each plane.
  const auto interleave = [](Word a, Word b) {
    const auto both = reinterpret_cast<Bytes16>(Words2{a, b});
    return reinterpret_cast<Pairs8>(
        __builtin_shufflevector(both, both, 0, 8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15));
  };
  const Pairs8 planes01 = interleave(words[0], words[1]);
  const Pairs8 planes23 = interleave(words[2], words[3]);
  const Pairs8 planes45 = interleave(words[4], words[5]);
  const Pairs8 planes67 = interleave(words[6], words[7]);
  const auto lowPairs = [](Pairs8 a, Pairs8 b) {
    return reinterpret_cast<Quads4>(__builtin_shufflevector(a, b, 0, 8, 1, 9, 2, 10, 3, 11));
  };
  const auto highPairs = [](Pairs8 a, Pairs8 b) {
    return reinterpret_cast<Quads4>(__builtin_shufflevector(a, b, 4, 12, 5, 13, 6, 14, 7, 15));
  };
  const auto lowQuads = [](Quads4 a, Quads4 b) { return __builtin_shufflevector(a, b, 0, 4, 1, 5); };
  const auto highQuads = [](Quads4 a, Quads4 b) { return __builtin_shufflevector(a, b, 2, 6, 3, 7); };
  const Quads4 low03 = lowPairs(planes01, planes23);
  const Quads4 high03 = highPairs(planes01, planes23);
  const Quads4 low47 = lowPairs(planes45, planes67);
  const Quads4 high47 = highPairs(planes45, planes67);
  const Quads4 groups[4] = {lowQuads(low03, low47), highQuads(low03, low47), lowQuads(high03, high47),
                            highQuads(high03, high47)};

  // Then the bits of each of these words.
#if EI4_AVX2
  const auto pairOf = [&](int i) {  // in memory, the stores of the halves would hold up the load of the whole
    return reinterpret_cast<Words4>(
        __builtin_shufflevector(groups[i], groups[i + 1], 0, 1, 2, 3, 4, 5, 6, 7));
  };
  const Words4 turned[2] = {transposed(pairOf(0)), transposed(pairOf(2))};
#else
  Words2 turned[4];
  for (int i = 0; i < 4; ++i) turned[i] = transposed(reinterpret_cast<Words2>(groups[i]));
#endif
  std::memcpy(bytes, turned, sizeof turned);
}

/// Eight planes of word `w` from `first` on; those from `end` on are 0.
inline void loadPlanes(const BlockScratch& block, std::size_t w, int first, int end, Word (&words)[8]) {
  for (int i = 0; i < 8; ++i) {
    words[i] = first + i < end ? block.planes[first + i][w] : 0;
  }
}

/// Whether all planes of word `w` from `first` to end - 1 are 0.
inline bool areClear(const BlockScratch& block, std::size_t w, int first, int end) {
  Word any = 0;
  for (int position = first; position < end; ++position) any |= block.planes[position][w];
  return any == 0;
}

/// Coefficients of up to 15 bits, in 16.
struct NarrowNumbers {
  using Lane = std::int16_t;

  static void store(const BlockScratch& block, std::size_t w, int planeEnd, Lane* out) {
    Word words[8];
    unsigned char low[64];
    if (areClear(block, w, 7, planeEnd)) {  // a byte holds each of them with its sign
      loadPlanes(block, w, 0, planeEnd < 7 ? planeEnd : 7, words);
      words[7] = block.negative[w];
      transpose(words, low);
      for (int i = 0; i < 64; ++i) out[i] = withSign<0x7f>(static_cast<signed char>(low[i]));
      return;
    }
    unsigned char upper[64];
    loadPlanes(block, w, 0, planeEnd, words);
    transpose(words, low);
    loadPlanes(block, w, 8, planeEnd, words);
    words[7] = block.negative[w];
    transpose(words, upper);
    for (int i = 0; i < 64; ++i) out[i] = withSign<0x7fff>(static_cast<Lane>(low[i] | (upper[i] << 8)));
  }

 private:
  /// From a magnitude below the sign bit.
  template <int kMagnitude>
  static Lane withSign(Lane value) {
    const auto sign = static_cast<Lane>(value >> 15);
    return static_cast<Lane>(((value & kMagnitude) ^ sign) - sign);
  }
};

/// Coefficients of up to 32 bits; the magnitude 2^31 becomes -2^31 with either sign.
struct WideNumbers {
  using Lane = std::int32_t;

  static void store(const BlockScratch& block, std::size_t w, int planeEnd, Lane* out) {
    constexpr int kNarrowEnd = 15;
    if (areClear(block, w, kNarrowEnd, planeEnd)) {
      NarrowNumbers::Lane narrow[64];
      NarrowNumbers::store(block, w, planeEnd < kNarrowEnd ? planeEnd : kNarrowEnd, narrow);
      for (int i = 0; i < 64; ++i) out[i] = narrow[i];
      return;
    }
    Word words[8];
    unsigned char bytes[4][64] = {};
    for (int group = 0; 8 * group < planeEnd; ++group) {
      loadPlanes(block, w, 8 * group, planeEnd, words);
      transpose(words, bytes[group]);
    }
    const Word negative = block.negative[w];
    for (int i = 0; i < 64; ++i) {
      const std::uint32_t value = bytes[0][i] | (std::uint32_t{bytes[1][i]} << 8) |
                                  (std::uint32_t{bytes[2][i]} << 16) | (std::uint32_t{bytes[3][i]} << 24);
      const auto sign = static_cast<std::uint32_t>(0U - static_cast<unsigned>((negative >> i) & 1));
      out[i] = static_cast<Lane>((value ^ sign) - sign);
    }
  }
};

/// The same, of which 16 bits are kept.
struct WrappedNumbers : WideNumbers {
  static void store(const BlockScratch& block, std::size_t w, int planeEnd, Lane* out) {
    WideNumbers::store(block, w, planeEnd, out);
    for (int i = 0; i < 64; ++i) out[i] = static_cast<std::int16_t>(out[i]);
  }
};

}  // namespace
}  // namespace zel::gwav4
