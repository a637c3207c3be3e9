#include "gwav4/sample_output.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

namespace zel::gwav4 {
namespace {

/// Largest sample of `bits` bits; the largest Number where they are more.
template <class Number>
Number largestSample(int bits) {
  using Limits = std::numeric_limits<Number>;
  return bits >= Limits::digits ? Limits::max() : static_cast<Number>((Number{1} << bits) - 1);
}

/// What happens to a sample on its way into a pixel: one of these, chosen outside the loops.
template <class Number>
struct Truncate {
  Number operator()(Number sample) const { return sample; }
};
template <class Number>
struct Clamp {
  Number largest;
  Number operator()(Number sample) const { return std::min(std::max(sample, Number{0}), largest); }
};

template <class Number, class Body>
void withLimit(int bits, Body body) {
  if (bits > 0) {
    body(Clamp<Number>{largestSample<Number>(bits)});
  } else {
    body(Truncate<Number>{});
  }
}

template <class T, class Pixel, class Limit>
void storeRow(const T* samples, std::size_t count, Pixel* out, Limit limit) {
  for (std::size_t i = 0; i < count; ++i) out[i] = static_cast<Pixel>(limit(samples[i]));
}

struct Rgb {
  int first;
  int second;
  int third;
};

/// Sums wrap at 32 bits: only a damaged stream gets there.
Rgb toRgb(int p0, int p1, int p2) {
  const auto wrap = [](int a, int b) {
    return static_cast<int>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
  };
  const int quarter = wrap(p1, p2) >> 2;
  const int green = static_cast<int>(static_cast<std::uint32_t>(p0) - static_cast<std::uint32_t>(quarter));
  return {wrap(p1, green), green, wrap(p2, green)};
}

/// Toward zero. Means of int samples can round up to 2^31.
std::int64_t truncated(float mean) { return static_cast<std::int64_t>(mean); }

}  // namespace

template <class T>
void storeGrey(const T* samples, std::size_t count, void* out, int bytesPerPixel, int bits) {
  withLimit<T>(bits, [&](auto limit) {
    if (bytesPerPixel == 1) {
      storeRow(samples, count, static_cast<std::uint8_t*>(out), limit);
    } else {
      storeRow(samples, count, static_cast<std::uint16_t*>(out), limit);
    }
  });
}

template <class T>
void storeColour(const SampleRows<T>& rows, std::size_t count, void* out, int bits) {
  withLimit<int>(bits, [&](auto limit) {
    auto* to = static_cast<unsigned char*>(out);
    for (std::size_t i = 0; i < count; ++i, to += 3) {
      const Rgb pixel = toRgb(rows[0][i], rows[1][i], rows[2][i]);
      to[0] = static_cast<unsigned char>(limit(pixel.first));
      to[1] = static_cast<unsigned char>(limit(pixel.second));
      to[2] = static_cast<unsigned char>(limit(pixel.third));
    }
  });
}

template <class T>
MeanRows<T>::MeanRows(int width, int height, int step, void* out, int bytesPerPixel, int bits)
    : columns(static_cast<std::size_t>(width)),
      rowsLeft(height),
      blockSize(static_cast<std::size_t>(step)),
      to(static_cast<unsigned char*>(out)),
      pixelBytes(bytesPerPixel),
      sampleBits(bits),
      components(bytesPerPixel == 3 ? 3 : 1),
      sums(components * ((columns + blockSize - 1) / blockSize)) {}

template <class T>
template <class Component>
void MeanRows<T>::addComponent(std::size_t component, Component sampleAt) {
  float* sum = sums.data() + component * (sums.size() / components);
  for (std::size_t x = 0; x < columns; ++sum) {
    const std::size_t end = std::min(x + blockSize, columns);
    for (; x < end; ++x) *sum += static_cast<float>(sampleAt(x));
  }
}

template <class T>
void MeanRows<T>::add(const SampleRows<T>& rows) {
  if (components == 1) {
    addComponent(0, [&](std::size_t x) { return rows[0][x]; });
  } else {
    const auto pixel = [&](std::size_t x) { return toRgb(rows[0][x], rows[1][x], rows[2][x]); };
    addComponent(0, [&](std::size_t x) { return pixel(x).first; });
    addComponent(1, [&](std::size_t x) { return pixel(x).second; });
    addComponent(2, [&](std::size_t x) { return pixel(x).third; });
  }
  ++rowsTaken;
  --rowsLeft;
  if (rowsTaken == static_cast<std::int64_t>(blockSize) || rowsLeft == 0) storeBand();
}

template <class T>
void MeanRows<T>::storeBand() {
  const std::size_t blocks = sums.size() / components;
  withLimit<std::int64_t>(sampleBits, [&](auto limit) {
    for (std::size_t i = 0; i < blocks; ++i) {
      const std::size_t width = std::min(blockSize, columns - i * blockSize);
      const auto samples = static_cast<float>(static_cast<std::int64_t>(width) * rowsTaken);
      for (std::size_t c = 0; c < components; ++c) {
        const std::int64_t mean = limit(truncated(sums[c * blocks + i] / samples));
        if (pixelBytes == 2) {
          const auto pixel = static_cast<std::uint16_t>(mean);
          std::memcpy(to, &pixel, sizeof pixel);
          to += sizeof pixel;
        } else {
          *to++ = static_cast<unsigned char>(mean);
        }
      }
    }
  });
  std::fill(sums.begin(), sums.end(), 0.0F);
  rowsTaken = 0;
}

template void storeGrey(const short*, std::size_t, void*, int, int);
template void storeGrey(const int*, std::size_t, void*, int, int);
template void storeColour(const SampleRows<short>&, std::size_t, void*, int);
template void storeColour(const SampleRows<int>&, std::size_t, void*, int);
template class MeanRows<short>;
template class MeanRows<int>;

}  // namespace zel::gwav4
