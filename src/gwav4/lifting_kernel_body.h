// The lifting steps in vectors.
// Compiled once for each instruction set: see kernels.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "gwav4/lifting_kernel.h"

namespace zel::gwav4 {
namespace {

#if EI4_AVX2
constexpr std::size_t kVectorBytes = 32;
#else
constexpr std::size_t kVectorBytes = 16;
#endif

/// Exchanges of samples between two vectors of as many as there are indices I.
template <class Vector, std::size_t... I>
struct Shuffles {
  /// The samples of a's and b's lower halves in turn; of their upper halves.
  static Vector lowPairs(Vector a, Vector b) {
    return __builtin_shufflevector(a, b, static_cast<int>(I / 2 + I % 2 * sizeof...(I))...);
  }
  static Vector highPairs(Vector a, Vector b) {
    return __builtin_shufflevector(a, b,
                                   static_cast<int>(sizeof...(I) / 2 + I / 2 + I % 2 * sizeof...(I))...);
  }
  /// The samples at the even places of a and then b; at the odd places.
  static Vector evens(Vector a, Vector b) {
    return __builtin_shufflevector(a, b, static_cast<int>(2 * I)...);
  }
  static Vector odds(Vector a, Vector b) {
    return __builtin_shufflevector(a, b, static_cast<int>(2 * I + 1)...);
  }
};

template <class Vector, std::size_t... I>
Shuffles<Vector, I...> shufflesOf(std::index_sequence<I...>);

/// Samples in 16 bits; whether they stay within the limits is watched.
struct NarrowLanes {
  using Lane = std::int16_t;
  using Vector = std::int16_t __attribute__((vector_size(kVectorBytes)));
  using Wrapping = std::uint16_t __attribute__((vector_size(kVectorBytes)));

  Vector least = {};
  Vector most = {};

  Vector watched(Wrapping bits) {
    const auto samples = reinterpret_cast<Vector>(bits);
    least = samples < least ? samples : least;
    most = samples > most ? samples : most;
    return samples;
  }
  Lane watched(std::uint32_t bits) { return watched(Wrapping{} + static_cast<std::uint16_t>(bits))[0]; }
  bool withinLimits() const {
    using Words = std::uint64_t __attribute__((vector_size(kVectorBytes)));
    std::uint64_t any = 0;
    const auto beyond = reinterpret_cast<Words>((least < Vector{} + std::int16_t{kLeastNarrow}) |
                                                (most > Vector{} + std::int16_t{kMostNarrow}));
    for (std::size_t i = 0; i < kVectorBytes / sizeof any; ++i) any |= beyond[i];
    return any == 0;
  }
  static Vector plain(Wrapping bits) { return reinterpret_cast<Vector>(bits); }
};

/// Samples in 32 bits, where sums wrap.
struct WideLanes {
  using Lane = std::int32_t;
  using Vector = std::int32_t __attribute__((vector_size(kVectorBytes)));
  using Wrapping = std::uint32_t __attribute__((vector_size(kVectorBytes)));

  static Vector watched(Wrapping bits) { return reinterpret_cast<Vector>(bits); }
  static Lane watched(std::uint32_t bits) { return static_cast<Lane>(bits); }
  static bool withinLimits() { return true; }
  static Vector plain(Wrapping bits) { return watched(bits); }
};

/// The same, and what is stored keeps its low 16 bits.
struct WrappedLanes : WideLanes {
  static Vector watched(Wrapping bits) { return reinterpret_cast<Vector>(bits << 16) >> 16; }
  static Lane watched(std::uint32_t bits) { return static_cast<std::int16_t>(bits); }
  static Vector plain(Wrapping bits) { return watched(bits); }
};

template <class Lanes>
struct Lifting {
  using Lane = typename Lanes::Lane;
  using Vector = typename Lanes::Vector;
  using Wrapping = typename Lanes::Wrapping;
  static constexpr std::size_t kLanes = sizeof(Vector) / sizeof(Lane);
  using Shuffle = decltype(shufflesOf<Wrapping>(std::make_index_sequence<kLanes>()));

  static Wrapping load(const Lane* from) {
    Wrapping samples;
    std::memcpy(&samples, from, sizeof samples);
    return samples;
  }
  static void store(Lane* to, Vector samples) { std::memcpy(to, &samples, sizeof samples); }

  /// Half, a half rounded away from zero; and a quarter, likewise.
  static Wrapping halves(Wrapping v) { return shifted(v, 1, 1); }
  static Wrapping quarters(Wrapping v) { return shifted(v, 2, 2); }
  static Wrapping shifted(Wrapping v, Lane bias, int shift) {
    const Vector sign = reinterpret_cast<Vector>(v) >> (8 * static_cast<int>(sizeof(Lane)) - 1);
    const Wrapping biased =
        v + reinterpret_cast<Wrapping>(sign) + reinterpret_cast<Wrapping>(Vector{} + bias);
    return reinterpret_cast<Wrapping>(reinterpret_cast<Vector>(biased) >> shift);
  }
  static std::uint32_t bitsOf(Lane sample) { return static_cast<std::uint32_t>(sample); }
  static std::uint32_t halfOf(Lane sample) {
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(bitsOf(sample) - (sample < 0 ? 1 : 0) + 1) >>
                                      1);
  }

  static bool lowerEven(Lane* even, const Lane* from, const Lane* before, const Lane* after,
                        std::size_t count) {
    Lanes lanes;
    for (std::size_t i = 0; i < count; i += kLanes) {
      store(even + i, lanes.watched(load(from + i) - quarters(load(before + i) + load(after + i))));
    }
    return lanes.withinLimits();
  }

  static bool lowerEvenAtEnd(Lane* even, const Lane* from, const Lane* neighbour, std::size_t count) {
    Lanes lanes;
    for (std::size_t i = 0; i < count; i += kLanes) {
      store(even + i, lanes.watched(load(from + i) - halves(load(neighbour + i))));
    }
    return lanes.withinLimits();
  }

  static bool raiseOdd(Lane* odd, const Lane* before, const Lane* after, std::size_t count) {
    Lanes lanes;
    for (std::size_t i = 0; i < count; i += kLanes) {
      store(odd + i, lanes.watched(load(odd + i) + halves(load(before + i) + load(after + i))));
    }
    return lanes.withinLimits();
  }

  static bool raiseOddAtEnd(Lane* odd, const Lane* neighbour, std::size_t count) {
    Lanes lanes;
    for (std::size_t i = 0; i < count; i += kLanes) {
      store(odd + i, lanes.watched(load(odd + i) + load(neighbour + i)));
    }
    return lanes.withinLimits();
  }

  static bool invertRow(Lane* low, const Lane* high, std::size_t count, Lane* out) {
    const std::size_t odds = count / 2;
    const std::size_t evens = count - odds;
    if (odds == 0) {
      if (evens != 0) out[0] = low[0];
      return true;
    }
    // The ends, where a neighbour is missing, are worked out apart and put over what the loops make of them.
    Lanes lanes;
    const Lane first = lanes.watched(bitsOf(low[0]) - halfOf(high[0]));
    const Lane last = lanes.watched(bitsOf(low[evens - 1]) - halfOf(high[odds - 1]));
    for (std::size_t i = 1; i < odds; i += kLanes) {
      store(low + i, lanes.watched(load(low + i) - quarters(load(high + i - 1) + load(high + i))));
    }
    low[0] = first;
    if (evens > odds) low[evens - 1] = last;
    // The last sample but one stands in for what is behind the last one, if that is odd.
    const Lane lastOdd = lanes.watched(bitsOf(high[odds - 1]) + bitsOf(low[evens - 1]));
    for (std::size_t i = 0; i < evens; i += kLanes) {
      const Wrapping even = load(low + i);
      const auto odd =
          reinterpret_cast<Wrapping>(Lanes::plain(load(high + i) + halves(even + load(low + i + 1))));
      store(out + 2 * i, reinterpret_cast<Vector>(Shuffle::lowPairs(even, odd)));
      store(out + 2 * i + kLanes, reinterpret_cast<Vector>(Shuffle::highPairs(even, odd)));
    }
    if (evens == odds) out[count - 1] = lastOdd;
    return lanes.withinLimits();
  }

  static void split(const Lane* row, std::size_t count, Lane* even, Lane* odd) {
    for (std::size_t i = 0; 2 * i < count; i += kLanes) {
      const Wrapping first = load(row + 2 * i);
      const Wrapping second = load(row + 2 * i + kLanes);
      store(even + i, reinterpret_cast<Vector>(Shuffle::evens(first, second)));
      store(odd + i, reinterpret_cast<Vector>(Shuffle::odds(first, second)));
    }
  }

  static constexpr LiftingKernel<Lane> kernel() {
    return {lowerEven, lowerEvenAtEnd, raiseOdd, raiseOddAtEnd, invertRow, split};
  }
};

}  // namespace
}  // namespace zel::gwav4
