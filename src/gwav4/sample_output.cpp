#include "gwav4/sample_output.h"

#include <algorithm>
#include <cstdint>
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

/// Calls body(x, y, columns, rows) for each block, row by row.
template <class T, class Body>
void forEachBlock(const BlockSource<T>& source, Body body) {
  const std::int64_t step = source.step;
  for (std::int64_t y = 0; y < source.height; y += step) {
    const std::int64_t rows = std::min(step, source.height - y);
    for (std::int64_t x = 0; x < source.width; x += step) {
      const std::int64_t columns = std::min(step, source.width - x);
      body(static_cast<std::size_t>(y) * source.stride + static_cast<std::size_t>(x), columns, rows);
    }
  }
}

template <class T, class Pixel, class Limit>
void storeGreyMeans(const BlockSource<T>& source, Pixel* out, Limit limit) {
  forEachBlock(source, [&](std::size_t start, std::int64_t columns, std::int64_t rows) {
    float sum = 0;
    const T* row = source.planes[0] + start;
    for (std::int64_t j = 0; j < rows; ++j, row += source.stride) {
      for (std::int64_t i = 0; i < columns; ++i) sum += static_cast<float>(row[i]);
    }
    *out++ = static_cast<Pixel>(limit(truncated(sum / static_cast<float>(columns * rows))));
  });
}

template <class T, class Limit>
void storeColourMeans(const BlockSource<T>& source, unsigned char* out, Limit limit) {
  forEachBlock(source, [&](std::size_t start, std::int64_t columns, std::int64_t rows) {
    std::array<float, 3> sums{};
    for (std::int64_t j = 0; j < rows; ++j, start += source.stride) {
      for (std::int64_t i = 0; i < columns; ++i) {
        const std::size_t at = start + static_cast<std::size_t>(i);
        const Rgb pixel = toRgb(source.planes[0][at], source.planes[1][at], source.planes[2][at]);
        sums[0] += static_cast<float>(pixel.first);
        sums[1] += static_cast<float>(pixel.second);
        sums[2] += static_cast<float>(pixel.third);
      }
    }
    const auto samples = static_cast<float>(columns * rows);
    for (const float sum : sums) *out++ = static_cast<unsigned char>(limit(truncated(sum / samples)));
  });
}

}  // namespace

template <class T>
void storeGrey(const T* samples, std::size_t count, void* out, int bytesPerPixel, int bits) {
  withLimit<int>(bits, [&](auto limit) {
    if (bytesPerPixel == 1) {
      storeRow(samples, count, static_cast<std::uint8_t*>(out), limit);
    } else {
      storeRow(samples, count, static_cast<std::uint16_t*>(out), limit);
    }
  });
}

template <class T>
void storeColour(const PlaneRows<T>& rows, std::size_t count, void* out, int bits) {
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
void storeMeans(const BlockSource<T>& source, void* out, int bytesPerPixel, int bits) {
  withLimit<std::int64_t>(bits, [&](auto limit) {
    if (bytesPerPixel == 3) {
      storeColourMeans(source, static_cast<unsigned char*>(out), limit);
    } else if (bytesPerPixel == 1) {
      storeGreyMeans(source, static_cast<std::uint8_t*>(out), limit);
    } else {
      storeGreyMeans(source, static_cast<std::uint16_t*>(out), limit);
    }
  });
}

template void storeGrey(const short*, std::size_t, void*, int, int);
template void storeGrey(const int*, std::size_t, void*, int, int);
template void storeColour(const PlaneRows<short>&, std::size_t, void*, int);
template void storeColour(const PlaneRows<int>&, std::size_t, void*, int);
template void storeMeans(const BlockSource<short>&, void*, int, int);
template void storeMeans(const BlockSource<int>&, void*, int, int);

}  // namespace zel::gwav4
