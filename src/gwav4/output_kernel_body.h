// Rows of samples to rows of pixels, in plain loops that the compiler vectorises.
// Compiled once for each instruction set: see kernels.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "gwav4/output_kernel.h"

namespace zel::gwav4 {
namespace {

/// What happens to a sample on its way into a pixel: one of these, chosen outside the loops.
struct Truncate {
  std::int32_t operator()(std::int32_t sample) const { return sample; }
};
struct Clamp {
  std::int32_t largest;
  std::int32_t operator()(std::int32_t sample) const {
    const std::int32_t low = sample < 0 ? 0 : sample;
    return low < largest ? low : largest;
  }
};

/// The largest number of `bits` bits, or the largest there is when they are more.
constexpr std::int32_t largestSample(int bits) {
  return bits >= 31 ? INT32_MAX : (std::int32_t{1} << bits) - 1;
}

/// Sums wrap at 32 bits: only a damaged stream gets there.
struct Colour {
  std::int32_t first;
  std::int32_t second;
  std::int32_t third;
};

inline std::int32_t wrappingSum(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

inline Colour toColour(std::int32_t p0, std::int32_t p1, std::int32_t p2) {
  const std::int32_t quarter = wrappingSum(p1, p2) >> 2;
  const auto green =
      static_cast<std::int32_t>(static_cast<std::uint32_t>(p0) - static_cast<std::uint32_t>(quarter));
  return {wrappingSum(p1, green), green, wrappingSum(p2, green)};
}

template <class T>
struct Output {
  template <class Pixel>
  static void storeGrey(const T* samples, std::size_t count, int bits, Pixel* out) {
    if (bits > 0) {
      store(samples, count, Clamp{largestSample(bits)}, out);
    } else {
      store(samples, count, Truncate{}, out);
    }
  }

  static void storeColour(const SampleRows<T>& rows, std::size_t count, int bits, std::uint8_t* out) {
    if (bits > 0) {
      store(rows, count, Clamp{largestSample(bits)}, out);
    } else {
      store(rows, count, Truncate{}, out);
    }
  }

  static void addGrey(const T* samples, std::size_t count, std::int32_t* sums) {
    for (std::size_t i = 0; i < count; ++i) sums[i] += samples[i];
  }

  static void addColour(const SampleRows<T>& rows, std::size_t count, std::int32_t* sums) {
    const T* const p0 = rows.planes[0];
    const T* const p1 = rows.planes[1];
    const T* const p2 = rows.planes[2];
    for (std::size_t i = 0; i < count; ++i) {
      const Colour pixel = toColour(p0[i], p1[i], p2[i]);
      sums[i] += pixel.first;
      sums[count + i] += pixel.second;
      sums[2 * count + i] += pixel.third;
    }
  }

  static void reduceSums(const std::int32_t* sums, std::size_t count, int step, std::int32_t* means) {
    switch (step) {
      case 2:
        reduce<2>(sums, count, means);
        break;
      case 4:
        reduce<4>(sums, count, means);
        break;
      default:
        reduce<8>(sums, count, means);
        break;
    }
  }

  static constexpr OutputKernel<T> kernel() {
    return {storeGrey<std::uint8_t>, storeGrey<std::uint16_t>, storeColour, addGrey, addColour, reduceSums};
  }

 private:
  template <int kStep>
  static std::int32_t mean(const std::int32_t* sums) {
    constexpr int kShift = kStep == 2 ? 2 : kStep == 4 ? 4 : 6;
    std::int32_t sum = sums[0];
    for (int k = 1; k < kStep; ++k) sum += sums[k];
    return (sum + ((sum >> 31) & (kStep * kStep - 1))) >> kShift;
  }

  /// In pieces of a constant length, which are read before they are written: these loops can be vectorised.
  template <int kStep>
  static void reduce(const std::int32_t* sums, std::size_t count, std::int32_t* means) {
    constexpr std::size_t kPiece = 16;
    std::size_t i = 0;
    for (; i + kPiece <= count; i += kPiece) {
      std::int32_t piece[kPiece];
      for (std::size_t k = 0; k < kPiece; ++k) piece[k] = mean<kStep>(sums + kStep * (i + k));
      std::memcpy(means + i, piece, sizeof piece);
    }
    for (; i < count; ++i) means[i] = mean<kStep>(sums + kStep * i);
  }

  template <class Limit, class Pixel>
  static void store(const T* samples, std::size_t count, Limit limit, Pixel* out) {
    for (std::size_t i = 0; i < count; ++i) out[i] = static_cast<Pixel>(limit(samples[i]));
  }

  template <class Limit>
  static void store(const SampleRows<T>& rows, std::size_t count, Limit limit, std::uint8_t* __restrict out) {
    const T* __restrict const p0 = rows.planes[0];
    const T* __restrict const p1 = rows.planes[1];
    const T* __restrict const p2 = rows.planes[2];
    for (std::size_t i = 0; i < count; ++i) {
      const Colour pixel = toColour(p0[i], p1[i], p2[i]);
      out[3 * i] = static_cast<std::uint8_t>(limit(pixel.first));
      out[3 * i + 1] = static_cast<std::uint8_t>(limit(pixel.second));
      out[3 * i + 2] = static_cast<std::uint8_t>(limit(pixel.third));
    }
  }
};

}  // namespace
}  // namespace zel::gwav4
