// Words of 64 bits, and the bits of a stream in such words.
// Compiled once for each instruction set: see kernels.h. Before it is included, EI4_AVX2 is 1 where the processor has
// AVX2 and BMI2, else 0.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "gwav4/block_kernel.h"

#if EI4_AVX2
#include <immintrin.h>
#endif

namespace zel::gwav4 {
namespace {

using Word = std::uint64_t;

inline Word firstOnes(std::uint64_t count) { return count >= 64 ? ~Word{0} : (Word{1} << count) - 1; }

#if EI4_AVX2

inline unsigned countOnes(Word word) { return static_cast<unsigned>(__builtin_popcountll(word)); }

/// Puts the lowest bits of a word, in order, at the places of the ones of `places`; further bits are ignored.
class Depositor {
 public:
  explicit Depositor(Word ones) : places(ones) {}
  Word deposited(Word bits) const { return _pdep_u64(bits, places); }

 private:
  Word places;
};

#else

/// Sums in place: pairs, nibbles, bytes, then all bytes in the top one.
inline unsigned countOnes(Word word) {
  word -= (word >> 1) & 0x5555555555555555;
  word = (word & 0x3333333333333333) + ((word >> 2) & 0x3333333333333333);
  word = (word + (word >> 4)) & 0x0f0f0f0f0f0f0f0f;
  return static_cast<unsigned>((word * 0x0101010101010101) >> 56);
}

/// Puts the lowest bits of a word, in order, at the places of the ones of `places`; further bits are ignored.
class Depositor {
 public:
  explicit Depositor(Word ones) : places(ones) {
    if (isSimple()) return;
    // A bit moves up by as many places as zeros stand below its place: by 32 where that number has bit 5, and
    // so on. `zeros` marks what is still to be counted; its running parity from below is one bit of the number.
    Word remaining = places;
    Word zeros = ~places << 1;
    for (int step = 0; step < kSteps; ++step) {
      Word parity = zeros;
      for (int shift = 1; shift < 64; shift *= 2) parity ^= parity << shift;
      const Word moved = parity & remaining;
      moves[step] = moved;
      remaining = (remaining ^ moved) | (moved >> (1 << step));
      zeros &= ~parity;
    }
  }

  Word deposited(Word bits) const {
    if (isSimple()) return bits & places;
    if (bits == 0) return 0;
    for (int step = kSteps - 1; step >= 0; --step) {
      bits = (bits & ~moves[step]) | ((bits << (1 << step)) & moves[step]);
    }
    return bits & places;
  }

 private:
  static constexpr int kSteps = 6;

  /// The ones, if any, have no zeros below them.
  bool isSimple() const { return (places & (places + 1)) == 0; }

  Word places;
  Word moves[kSteps];
};

#endif

/// 64 bits as memory holds them, least significant first.
inline Word littleEndian(Word word) {
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
  word = __builtin_bswap64(word);
#endif
  return word;
}

inline Word loadWord8(const unsigned char* bytes) {
  Word word;
  std::memcpy(&word, bytes, sizeof word);
  return littleEndian(word);
}

inline void storeWord8(unsigned char* bytes, Word word) {
  word = littleEndian(word);
  std::memcpy(bytes, &word, sizeof word);
}

/// 64 bits from bit `at` on; reads nine bytes.
inline Word bitsAt(const unsigned char* bytes, std::uint64_t at) {
  const unsigned char* const from = bytes + at / 8;
  const unsigned shift = at % 8;
  return (loadWord8(from) >> shift) | ((Word{from[8]} << 1) << (63 - shift));
}

constexpr int kVisible = 57;  ///< bits that look() shows at least

/// Bits from the cursor on that lie inside the block's last whole words: up to here eight bytes can be loaded.
inline bool canLoad(const BitCursor& bits) { return bits.position + 64 <= bits.bitCount; }

/// The next bits where canLoad.
inline Word look(const BitCursor& bits) {
  return loadWord8(bits.bytes + bits.position / 8) >> (bits.position % 8);
}

/// The next bits anywhere.
Word lookSafely(const BitCursor& bits) {
  if (canLoad(bits)) return look(bits);
  if (bits.position >= bits.bitCount) return 0;
  Word word = 0;
  const std::uint64_t first = bits.position / 8;
  const std::uint64_t left = bits.bitCount / 8 - first;
  std::memcpy(&word, bits.bytes + first, left < 8 ? static_cast<std::size_t>(left) : 8);
  return littleEndian(word) >> (bits.position % 8);
}

/// 64 bits a word, `count` bits in all, into `out`; the bits behind them are unspecified.
void copyBits(const BitCursor& bits, std::size_t count, unsigned char* out) {
  constexpr std::uint64_t kStep = 48;  // whole bytes that look shows
  BitCursor at = bits;
  for (std::size_t done = 0; done < count; done += kStep, out += kStep / 8, at.position += kStep) {
    const Word word = littleEndian(lookSafely(at));
    std::memcpy(out, &word, kStep / 8);
  }
}

}  // namespace
}  // namespace zel::gwav4
