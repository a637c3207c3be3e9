// The body of the block kernels, compiled once for each instruction set. All of it has internal linkage, and it
// calls no inline function of another header: the linker must never pick a copy made for another processor.
//
// Before it is included, EI4_AVX2 is 1 where the processor has AVX2 and BMI2, else 0.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "gwav4/block_kernel.h"
#include "gwav4/run_codes.h"

#if EI4_AVX2
#include <immintrin.h>
#endif

namespace zel::gwav4 {
namespace {

using Word = std::uint64_t;

// ---------------------------------------------------------------------------------------------- words of bits

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

// ------------------------------------------------------------------------------------------- bits of a stream

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

// ------------------------------------------------------------------------------------------------ significance

// The run code (see CBitDecoder). Its parameter is 1 in every stream of this format.
constexpr int kEscape = 40;
constexpr int kEndless = 41;
constexpr std::int64_t kEndlessCount = (std::int64_t{1} << 30) + 1;
constexpr std::int64_t kCountAfterTerminator = 41;

int takeZeros(BitCursor& bits) {
  const int zeros = __builtin_ctzll(lookSafely(bits) | (Word{1} << kEndless));
  bits.position += static_cast<std::uint64_t>(zeros == kEndless ? zeros : zeros + 1);
  return zeros;
}

/// Any run code at any place. Escape behind escape ends with the data: zeros are no escape.
std::int64_t takeRun(BitCursor& bits, bool& terminated) {
  int zeros = takeZeros(bits);
  if (zeros == kEscape) {
    if (terminated) return kCountAfterTerminator;
    while (zeros == kEscape) zeros = takeZeros(bits);
    terminated = true;
  }
  if (zeros == kEndless) return kEndlessCount;
  if (zeros <= 1) return zeros;
  const int extraBits = zeros - 1;
  const Word extra = lookSafely(bits) & firstOnes(static_cast<unsigned>(extraBits));
  bits.position += static_cast<unsigned>(extraBits);
  return static_cast<std::int64_t>((Word{1} << extraBits) + extra);
}

/// An event fits the visible bits up to this many zeros: 1 + (28 + 1) + (28 - 1) bits.
constexpr int kMostZerosAtOnce = 28;

/// Reads a significance stream ahead, until a number of decisions is there.
class RunReader {
 public:
  RunReader(RunCursor& of, std::size_t needed) { begin(of, needed); }

  void begin(RunCursor& of, std::size_t needed) {
    cursor = &of;
    bytes = of.bits.bytes;
    position = of.bits.position;
    loadEnd = of.bits.bitCount < 64 ? 0 : of.bits.bitCount - 63;
    signsAt = of.signsAt;
    const std::size_t used = of.begin / 8;
    const std::size_t kept = of.end / 8 - used;
    if (used != 0) {
      std::memmove(of.ahead, of.ahead + used, kept + 1);
      std::memmove(of.ahead + signsAt, of.ahead + used + signsAt, kept + 1);
      of.begin -= 8 * used;
      of.end -= 8 * used;
    }
    to = of.ahead + kept;
    fill = of.end % 8;
    openDecisions = to[0] & firstOnes(fill);
    openSigns = to[signsAt] & firstOnes(fill);
    left = static_cast<std::int64_t>(needed) - static_cast<std::int64_t>(of.end - of.begin);
    if (left > 0) {  // zeros need not be written from here on
      const std::size_t bytesLeft = static_cast<std::size_t>(left) / 8 + 2;
      std::memset(to, 0, bytesLeft);
      std::memset(to + signsAt, 0, bytesLeft);
    }
    const std::int64_t zeros = left <= 0 ? 0 : of.zeros < left ? of.zeros : left;
    of.zeros -= zeros;
    left -= zeros;
    appendZerosBehind(0, 0, static_cast<std::uint64_t>(zeros));
  }
  RunReader(const RunReader&) = delete;
  RunReader& operator=(const RunReader&) = delete;

  /// There is more to read, and eight bytes of it can be loaded.
  bool canLook() const { return left > 0 && position < loadEnd; }

  /// Takes some events where canLook.
  [[gnu::always_inline]] void takeSome() {
    Word word = loadWord8(bytes + position / 8) >> (position % 8);
    RunCodes codes = kRunCodes.entries[word % RunCodeTable::kEntries];
    if (codes != 0) {
      RunCodes sum = 0;
      for (int looks = 1;; ++looks) {
        word >>= codes % 64;
        sum += codes;
        append((codes >> 16) & 0xffffff, codes >> 40, (codes >> 8) & 0xff);
        if (looks == kVisible / kRunCodeBits) break;
        codes = kRunCodes.entries
                    [word %
                     RunCodeTable::kEntries];  // where no event fits, this and what follows changes nothing
      }
      position += sum % 64;
      left -= static_cast<std::int64_t>((sum >> 8) & 0xff);
      return;
    }
    const int zeros = __builtin_ctzll((word >> 1) | (Word{1} << (kVisible - 1)));
    if (zeros > kMostZerosAtOnce) [[unlikely]] {
      takeOne();
      return;
    }
    const auto extraBits = static_cast<unsigned>(zeros - 1);  // no zeros at all are among the codes
    const Word extra = (word >> (zeros + 2)) & firstOnes(extraBits);
    position += static_cast<unsigned>(zeros + 2) + extraBits;
    takeEvent(word & 1, static_cast<std::int64_t>((Word{1} << extraBits) + extra));
  }

  /// Takes what is left, and moves the cursor.
  void finish() {
    while (canLook()) takeSome();
    while (left > 0) takeOne();
    cursor->bits.position = position;
    cursor->end = 8 * static_cast<std::size_t>(to - cursor->ahead) + fill;
  }

 private:
  /// Takes the next event wherever it is.
  [[gnu::noinline]] void takeOne() {
    BitCursor bits = {bytes, position, cursor->bits.bitCount};
    const Word sign = lookSafely(bits) & 1;
    ++bits.position;
    const std::int64_t run = takeRun(bits, cursor->terminated);
    position = bits.position;
    takeEvent(sign, run);
  }

  void takeEvent(Word sign, std::int64_t run) {
    --left;
    const std::int64_t zeros = run < left ? run : left;
    cursor->zeros = run - zeros;
    left -= zeros;
    appendZerosBehind(1, sign, 1 + static_cast<std::uint64_t>(zeros));
  }

  /// At most 56 decisions.
  void append(Word decisions, Word signs, std::uint64_t count) {
    openDecisions |= decisions << fill;
    openSigns |= signs << fill;
    fill += count;
    storeOpen();
    to += fill / 8;
    openDecisions >>= fill & 56;
    openSigns >>= fill & 56;
    fill %= 8;
  }

  /// One decision with zeros behind it, `count` in all; 0: nothing.
  void appendZerosBehind(Word decision, Word sign, std::uint64_t count) {
    openDecisions |= decision << fill;
    openSigns |= sign << fill;
    fill += count;
    storeOpen();
    to += fill / 8;
    if (fill >= 8) {
      openDecisions = 0;
      openSigns = 0;
    }
    fill %= 8;
  }

  void storeOpen() {
    storeWord8(to, openDecisions);
    storeWord8(to + signsAt, openSigns);
  }

  RunCursor* cursor;
  const unsigned char* bytes;
  std::uint64_t position;
  std::uint64_t loadEnd;  ///< eight bytes can be loaded from positions before this one
  unsigned char* to;
  std::size_t signsAt;
  std::uint64_t fill;  ///< bits behind `to` that do not make a byte yet
  Word openDecisions;
  Word openSigns;
  std::int64_t left;  ///< decisions to be read; negative: read beyond those asked for
};

bool hasAhead(const RunCursor& cursor, std::size_t needed) {
  return cursor.end - cursor.begin >= needed ||
         (cursor.end == cursor.begin && cursor.zeros >= static_cast<std::int64_t>(needed));
}

/// Reads ahead until `needed` decisions are there for `position` and some positions below it, two streams at a time: they
/// have nothing to do with each other, so the processor works on one while it waits for the other.
[[gnu::noinline]] void readAhead(OrderCursors& order, int position, std::size_t needed) {
  constexpr int kPositions = 2;  // more of them would read more than is wanted at the end of an order
  RunCursor* waiting[kPositions];
  int count = 0;
  for (int i = 0; i < kPositions && position - i >= order.lowestSignificance; ++i) {
    RunCursor& cursor = order.runs[position - i];
    if (!hasAhead(cursor, needed)) waiting[count++] = &cursor;
  }
  if (count == 0) return;
  RunReader first(*waiting[0], needed);
  if (count > 1) {
    RunReader second(*waiting[1], needed);
    for (int next = 2;;) {
      while (first.canLook() && second.canLook()) {
        first.takeSome();
        second.takeSome();
      }
      RunReader& done = first.canLook() ? second : first;
      if (next == count) break;
      done.finish();
      done.begin(*waiting[next++], needed);
    }
    second.finish();
  }
  first.finish();
}

// ------------------------------------------------------------------------------------------------ bit planes

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

// -------------------------------------------------------------------------------------- from planes to numbers

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

/// Coefficients of up to 15 bits, in 16.
struct NarrowNumbers {
  using Lane = std::int16_t;

  static void store(const BlockScratch& block, std::size_t w, int planeEnd, Lane* out) {
    Word high = 0;
    for (int position = 7; position < planeEnd; ++position) {
      high |= block.planes[position][w];
    }
    Word words[8];
    unsigned char low[64];
    if (high == 0) {  // a byte holds each of them with its sign
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
