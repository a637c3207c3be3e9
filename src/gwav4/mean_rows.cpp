#include "gwav4/mean_rows.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <numeric>
#include <type_traits>

#include "gwav4/kernels.h"

namespace zel::gwav4 {
namespace {

/// A colour component of shorts stays below 2^17 in magnitude, so a sum of 8 x 8 of them stays below 2^24 in any order.
constexpr std::size_t kMostExactStep = 8;

template <class T>
const OutputKernel<T>& outputKernel() {
  if constexpr (std::is_same_v<T, short>) {
    return kernels().narrow.output;
  } else {
    return kernels().wide.output;
  }
}

}  // namespace

template <class T>
MeanRows<T>::MeanRows(int width, int height, int step, void* out, int bytesPerPixel, int bits)
    : columns(static_cast<std::size_t>(width)),
      rowsLeft(height),
      blockSize(static_cast<std::size_t>(step)),
      components(bytesPerPixel == 3 ? 3 : 1),
      blocks((columns + blockSize - 1) / blockSize),
      pixelBytes(bytesPerPixel),
      sampleBits(bits),
      to(static_cast<unsigned char*>(out)),
      exact(std::is_same_v<T, short> && blockSize <= kMostExactStep),
      sums(exact ? 0 : components * blocks),
      columnSums(exact ? components * columns : 0) {}

template <class T>
void MeanRows<T>::add(const SampleRows<T>& rows) {
  if (!exact) {
    addInOrder(rows);
  } else if (components == 1) {
    outputKernel<T>().addGrey(rows.planes[0], columns, columnSums.data());
  } else {
    outputKernel<T>().addColour(rows, columns, columnSums.data());
  }
  ++rowsTaken;
  --rowsLeft;
  if (rowsTaken == static_cast<std::int64_t>(blockSize) || rowsLeft == 0) storeBand();
}

template <class T>
void MeanRows<T>::addInOrder(const SampleRows<T>& rows) {
  std::vector<std::int32_t> colours;
  if (components == 3) {
    colours.resize(3 * columns);
    outputKernel<T>().addColour(rows, columns, colours.data());
  }
  float* sum = sums.data();
  for (std::size_t c = 0; c < components; ++c) {
    for (std::size_t x = 0; x < columns; ++sum) {
      const std::size_t end = std::min(x + blockSize, columns);
      for (; x < end; ++x)
        *sum += static_cast<float>(components == 3 ? colours[c * columns + x] : rows.planes[0][x]);
    }
  }
}

/// Toward zero. Means of ints can round up to 2^31.
template <class T>
std::int64_t MeanRows<T>::meanOf(float sum, std::size_t block) const {
  const std::size_t width = std::min(blockSize, columns - block * blockSize);
  return static_cast<std::int64_t>(sum / static_cast<float>(static_cast<std::int64_t>(width) * rowsTaken));
}

template <class T>
void MeanRows<T>::storeBand() {
  if (exact) {
    storeExactly();
  } else {
    constexpr int kDigits = std::numeric_limits<std::int64_t>::digits;
    const std::int64_t largest = sampleBits >= kDigits ? std::numeric_limits<std::int64_t>::max()
                                                       : (std::int64_t{1} << sampleBits) - 1;
    for (std::size_t i = 0; i < blocks; ++i) {
      for (std::size_t c = 0; c < components; ++c) {
        std::int64_t mean = meanOf(sums[c * blocks + i], i);
        if (sampleBits > 0) mean = std::clamp(mean, std::int64_t{0}, largest);
        const auto pixel = static_cast<std::uint16_t>(mean);
        if (pixelBytes == 2) {
          std::memcpy(to, &pixel, sizeof pixel);
          to += sizeof pixel;
        } else {
          *to++ = static_cast<unsigned char>(pixel);
        }
      }
    }
    std::fill(sums.begin(), sums.end(), 0.0F);
  }
  rowsTaken = 0;
}

/// Turns the sums of columns into the means of blocks.
template <class T>
void MeanRows<T>::gatherColumns() {
  const std::size_t whole = rowsTaken == static_cast<std::int64_t>(blockSize) ? columns / blockSize : 0;
  for (std::size_t c = 0; c < components; ++c) {
    const std::int32_t* const column = columnSums.data() + c * columns;
    std::int32_t* const means = columnSums.data() + c * blocks;
    if (blockSize > 1) outputKernel<T>().reduceSums(column, whole, static_cast<int>(blockSize), means);
    for (std::size_t i = blockSize > 1 ? whole : 0; i < blocks; ++i) {
      const std::size_t width = std::min(blockSize, columns - i * blockSize);
      const std::int32_t sum =
          std::accumulate(column + i * blockSize, column + i * blockSize + width, std::int32_t{0});
      means[i] = static_cast<std::int32_t>(meanOf(static_cast<float>(sum), i));
    }
  }
}

template <class T>
void MeanRows<T>::storeExactly() {
  gatherColumns();
  const OutputKernel<std::int32_t>& kernel = kernels().wide.output;
  if (components == 3) {
    std::vector<std::uint8_t> pixels(blocks);
    for (std::size_t c = 0; c < components; ++c) {
      kernel.storeGrey8(columnSums.data() + c * blocks, blocks, sampleBits, pixels.data());
      for (std::size_t i = 0; i < blocks; ++i) to[3 * i + c] = pixels[i];
    }
  } else if (pixelBytes == 1) {
    kernel.storeGrey8(columnSums.data(), blocks, sampleBits, to);
  } else {
    kernel.storeGrey16(columnSums.data(), blocks, sampleBits, reinterpret_cast<std::uint16_t*>(to));
  }
  to += blocks * static_cast<std::size_t>(pixelBytes);
  std::fill(columnSums.begin(), columnSums.end(), 0);
}

template class MeanRows<short>;
template class MeanRows<int>;

}  // namespace zel::gwav4
