// The body of a row kernel, compiled once for each instruction set. All of it has internal linkage, and it
// calls no inline function of another header: the linker must never pick a copy made for another processor.
//
// Before it is included, EI4_DEPOSIT is 1 where the processor has a bit deposit instruction, else 0.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "gwav4/bit_plane_row.h"

#if EI4_DEPOSIT
#include <immintrin.h>
#endif

namespace zel::gwav4 {
namespace {

using Mask = std::uint64_t;

inline Mask maskOfFirst(int count) { return count >= 64 ? ~Mask{0} : (Mask{1} << count) - 1; }

#if EI4_DEPOSIT

inline int countOnes(Mask mask) { return __builtin_popcountll(mask); }
inline Mask deposit(Mask bits, Mask places) { return _pdep_u64(bits, places); }
inline Mask selectOne(Mask mask, int index) { return _pdep_u64(Mask{1} << index, mask); }

#else

/// Sums in place: pairs, nibbles, bytes, then all bytes in the top one.
inline int countOnes(Mask mask) {
  mask -= (mask >> 1) & 0x5555555555555555;
  mask = (mask & 0x3333333333333333) + ((mask >> 2) & 0x3333333333333333);
  mask = (mask + (mask >> 4)) & 0x0f0f0f0f0f0f0f0f;
  return static_cast<int>((mask * 0x0101010101010101) >> 56);
}

/// The lowest bits of `bits`, in order, at the places of the ones of `places`; further bits are ignored.
inline Mask deposit(Mask bits, Mask places) {
  constexpr int kSteps = 6;
  // A bit moves up by as many places as zeros stand below its place: by 32 where that number has bit 5, and
  // so on. `zeros` marks what is still to be counted; its running parity from below is one bit of the number.
  Mask moves[kSteps];
  Mask remaining = places;
  Mask zeros = ~places << 1;
  for (int step = 0; step < kSteps; ++step) {
    Mask parity = zeros;
    for (int shift = 1; shift < 64; shift *= 2) parity ^= parity << shift;
    const Mask moved = parity & remaining;
    moves[step] = moved;
    remaining = (remaining ^ moved) | (moved >> (1 << step));
    zeros &= ~parity;
  }
  for (int step = kSteps - 1; step >= 0; --step) {
    bits = (bits & ~moves[step]) | ((bits << (1 << step)) & moves[step]);
  }
  return bits & places;
}

/// The one of `mask` that has `index` ones below it, by itself; index < countOnes(mask).
inline Mask selectOne(Mask mask, int index) {
  int shift = 0;
  for (int width = 32; width >= 8; width /= 2) {
    const Mask low = mask & ((Mask{1} << width) - 1);
    const int ones = countOnes(low);
    if (index < ones) {
      mask = low;
    } else {
      index -= ones;
      mask >>= width;
      shift += width;
    }
  }
  for (; index > 0; --index) mask &= mask - 1;
  return (mask & (~mask + 1)) << shift;
}

#endif

inline Mask loadBits(const unsigned char* bytes) {
  Mask word;
  std::memcpy(&word, bytes, sizeof word);
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
  word = __builtin_bswap64(word);
#endif
  return word;
}

/// A reader's position held in registers, showing 57 bits at a time; closed in the last 8 bytes of the block,
/// where the reader itself must go on.
class BitWindow {
 public:
  static constexpr int kVisible = 57;

  explicit BitWindow(CBitReader& of) : reader(of) { load(); }
  bool isOpen() const { return position < openEnd; }
  Mask peek() const { return loadBits(bytes + position / 8) >> (position % 8); }
  void skip(int count) { position += static_cast<std::uint64_t>(count); }

  void commit() { reader.seek(position); }
  void load() {
    const CBitReader::Window window = reader.window();
    bytes = window.bytes;
    position = window.position;
    openEnd = window.bitCount < 64 ? 0 : window.bitCount - 63;
  }

  /// The next `count` bits, 1 to 64; what stands above them in the result is unspecified.
  Mask takeBits(int count) {
    if (!isOpen()) return takeSlowly(count);
    const Mask bits = peek();
    if (count <= kVisible) {
      skip(count);
      return bits;
    }
    constexpr int kFirst = 32;
    skip(kFirst);
    if (!isOpen()) return (bits & maskOfFirst(kFirst)) | (takeSlowly(count - kFirst) << kFirst);
    const Mask rest = peek();
    skip(count - kFirst);
    return (bits & maskOfFirst(kFirst)) | (rest << kFirst);
  }

 private:
  Mask takeSlowly(int count) {
    commit();
    const Mask bits = reader.takeBits(count);
    load();
    return bits;
  }

  CBitReader& reader;
  const unsigned char* bytes = nullptr;
  std::uint64_t position = 0;
  std::uint64_t openEnd = 0;
};

/// One refinement bit for each significant coefficient.
void refine(CBitInfiniteReader& streamer, const Mask* significant, Mask* plane, std::size_t words) {
  BitWindow window(streamer);
  for (std::size_t w = 0; w < words; ++w) {
    const Mask places = significant[w];
    if (places != 0) plane[w] |= deposit(window.takeBits(countOnes(places)), places);
  }
  window.commit();
}

/// A run code with its sign bit fits the window up to this many zeros: 1 + (28 + 1) + (28 - 1) bits.
constexpr int kMostZerosAtOnce = 28;

/// Makes coefficients significant, one a run, until the run at hand reaches past the row.
/// `open` of the row's coefficients were not significant yet; coder.run < open. alsoSet may be null.
/// Returns how many became significant.
int readEvents(CBitDecoder& coder, int count, int open, const RowMasks& masks, Mask* plane, Mask* alsoSet) {
  BitWindow window(*coder.source);
  std::int64_t run = coder.run;
  std::uint64_t total = coder.total;
  const int k = coder.k;
  std::int64_t left = open;
  int found = 0;

  std::size_t w = 0;
  Mask candidates = ~masks.significant[0] & maskOfFirst(count);
  Mask events = 0;
  Mask minus = 0;
  const auto finishWord = [&] {
    masks.significant[w] |= events;
    masks.negative[w] |= minus;
    plane[w] |= events;
    if (alsoSet != nullptr) alsoSet[w] |= events;
  };

  do {
    left -= run + 1;
    ++found;
    int ones = countOnes(candidates);
    while (run >= ones) {
      run -= ones;
      finishWord();
      ++w;
      events = 0;
      minus = 0;
      candidates = ~masks.significant[w] & maskOfFirst(count - static_cast<int>(64 * w));
      ones = countOnes(candidates);
    }
    const Mask event = selectOne(candidates, static_cast<int>(run));
    events |= event;
    candidates &= ~(event | (event - 1));

    bool negative = false;
    const Mask bits = window.isOpen() ? window.peek() : 0;
    const int zeros = __builtin_ctzll((bits >> 1) | (Mask{1} << 63));
    if (zeros <= kMostZerosAtOnce) {
      negative = (bits & 1) != 0;
      const int extraBits = zeros <= k ? 0 : zeros - k;
      const Mask extra = (bits >> (zeros + 2)) & maskOfFirst(extraBits);
      run = zeros <= k ? zeros : static_cast<std::int64_t>((Mask{1} << extraBits) + extra) + k - 1;
      total += static_cast<std::uint64_t>(run) + 1;
      window.skip(zeros + 2 + extraBits);
    } else {
      window.commit();
      coder.total = total;
      negative = coder.takeEvent();
      run = coder.run;
      total = coder.total;
      window.load();
    }
    if (negative) minus |= event;
  } while (run < left);

  finishWord();
  window.commit();
  coder.run = run - left;
  coder.total = total;
  return found;
}

/// The mid-point of what was left unread.
/// Quirk mid-point-is-a-quarter: half of the step below the last position read, not half of all that is
/// unread.
Mask* midPointPlane(const RowMasks& masks, int lastPosition) {
  return lastPosition >= 2 ? masks.planes + static_cast<std::size_t>(lastPosition - 2) * masks.words
                           : nullptr;
}

void readRow(const OrderStreams& streams, int count, const RowMasks& masks) {
  const int lowest = streams.lowestSignificance < streams.lowestRefinement ? streams.lowestSignificance
                                                                           : streams.lowestRefinement;
  int open = count;
  for (int position = streams.top; position >= lowest; --position) {
    Mask* plane = masks.planes + static_cast<std::size_t>(position) * masks.words;
    if (position >= streams.lowestRefinement && open < count) {
      refine(streams.streamers[position], masks.significant, plane, masks.words);
    }
    if (position >= streams.lowestSignificance) {
      CBitDecoder& coder = streams.coders[position];
      // Below the lowest refinement a coefficient's own position is the last one read.
      Mask* midPoint = position < streams.lowestRefinement ? midPointPlane(masks, position) : nullptr;
      if (coder.run >= open) {
        coder.run -= open;
      } else {
        open -= readEvents(coder, count, open, masks, plane, midPoint);
      }
    }
    Mask* midPoint = position == streams.lowestRefinement ? midPointPlane(masks, position) : nullptr;
    if (midPoint != nullptr) {
      for (std::size_t w = 0; w < masks.words; ++w) midPoint[w] |= masks.significant[w];
    }
  }
}

// From 64 one-bit columns to 64 numbers: each 16-bit lane tests its own bit of a plane's word.
using Lanes = std::uint16_t __attribute__((vector_size(32)));
constexpr int kLanes = 16;
constexpr Lanes kLaneBit = {1U << 0, 1U << 1, 1U << 2,  1U << 3,  1U << 4,  1U << 5,  1U << 6,  1U << 7,
                            1U << 8, 1U << 9, 1U << 10, 1U << 11, 1U << 12, 1U << 13, 1U << 14, 1U << 15};

/// 16 bits of magnitude of 64 coefficients: bit i of magnitudes[c] is bit c of word `w` of planes[i].
void transpose(const RowMasks& masks, std::size_t w, int firstPlane, int planeEnd,
               std::uint16_t* magnitudes) {
  Lanes lanes[4] = {};
  for (int position = firstPlane; position < planeEnd; ++position) {
    const Mask bits = masks.planes[static_cast<std::size_t>(position) * masks.words + w];
    if (bits == 0) continue;
    const auto weight = static_cast<std::uint16_t>(1U << (position - firstPlane));
    for (int group = 0; group < 4; ++group) {
      const auto piece = static_cast<std::uint16_t>(bits >> (kLanes * group));
      const Lanes here = ((piece & kLaneBit) == kLaneBit);
      lanes[group] |= here & weight;
    }
  }
  std::memcpy(magnitudes, lanes, sizeof lanes);
}

/// The 64 magnitudes of a word, as wide as the coefficients.
void magnitudesOf(const RowMasks& masks, std::size_t w, int positions, std::uint16_t* magnitudes) {
  transpose(masks, w, 0, positions, magnitudes);
}
void magnitudesOf(const RowMasks& masks, std::size_t w, int positions, std::uint32_t* magnitudes) {
  std::uint16_t low[64];
  transpose(masks, w, 0, positions < 16 ? positions : 16, low);
  std::uint16_t high[64] = {};
  if (positions > 16) transpose(masks, w, 16, positions, high);
  for (int i = 0; i < 64; ++i) magnitudes[i] = low[i] | (static_cast<std::uint32_t>(high[i]) << 16);
}

template <class T, class Magnitude>
void storeRow(const RowMasks& masks, int count, int positions, T* out, int step) {
  static_assert(sizeof(T) == sizeof(Magnitude));
  const auto spacing = static_cast<std::size_t>(step);
  for (std::size_t w = 0; w < masks.words; ++w) {
    if (masks.significant[w] == 0) continue;
    Magnitude values[64];
    magnitudesOf(masks, w, positions, values);
    const Mask minus = masks.negative[w];
    for (int i = 0; i < 64; ++i) {
      const auto sign = static_cast<Magnitude>(0U - ((minus >> i) & 1));
      values[i] = static_cast<Magnitude>((values[i] ^ sign) - sign);
    }
    const std::size_t left = static_cast<std::size_t>(count) - 64 * w;
    const std::size_t end = left < 64 ? left : 64;
    T* to = out + 64 * w * spacing;
    if (step == 1) {
      std::memcpy(to, values, end * sizeof(T));
    } else {
      for (std::size_t i = 0; i < end; ++i) to[i * spacing] = static_cast<T>(values[i]);
    }
  }
}

constexpr auto store16 = storeRow<short, std::uint16_t>;
constexpr auto store32 = storeRow<int, std::uint32_t>;

}  // namespace
}  // namespace zel::gwav4
