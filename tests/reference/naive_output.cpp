#include "reference/naive_output.h"

#include <algorithm>
#include <array>

namespace ei4::test {
namespace {

// The components of one pixel; grey uses the first only.
using Components = std::array<std::int32_t, 3>;

Components componentsAt(std::span<const NaivePlane> planes, int x, int y) {
  if (planes.size() == 1) return {planes[0].at(x, y), 0, 0};
  const std::int32_t p1 = planes[1].at(x, y);
  const std::int32_t p2 = planes[2].at(x, y);
  const std::int32_t green = planes[0].at(x, y) - ((p1 + p2) >> 2);
  return {p1 + green, green, p2 + green};
}

std::int64_t clamped(std::int64_t value, int bits) {
  if (bits == 0) return value;
  const std::int64_t highest = (std::int64_t{1} << std::min(bits, 40)) - 1;
  return std::clamp(value, std::int64_t{0}, highest);
}

struct Block {
  int left, top, right, bottom;
};

// The sums run in single precision, row by row and from left to right, as the rounding depends on it.
std::int64_t meanOf(std::span<const NaivePlane> planes, const Block& block, std::size_t component) {
  float sum = 0.0F;
  for (int y = block.top; y < block.bottom; ++y) {
    for (int x = block.left; x < block.right; ++x) {
      sum += static_cast<float>(componentsAt(planes, x, y)[component]);
    }
  }
  const auto count = static_cast<float>(std::int64_t{block.right - block.left} * (block.bottom - block.top));
  return static_cast<std::int64_t>(sum / count);
}

std::int64_t valueOf(std::span<const NaivePlane> planes, const Block& block, std::int64_t step,
                     std::size_t component) {
  if (step == 1) return componentsAt(planes, block.left, block.top)[component];
  return meanOf(planes, block, component);
}

}  // namespace

std::vector<std::uint8_t> convertSamples(std::span<const NaivePlane> planes, int bytesPerPixel, int bits,
                                         std::int64_t step) {
  const std::int64_t width = planes[0].width;
  const std::int64_t height = planes[0].height;
  std::vector<std::uint8_t> out;
  for (std::int64_t top = 0; top < height; top += step) {
    for (std::int64_t left = 0; left < width; left += step) {
      const Block block{static_cast<int>(left), static_cast<int>(top),
                        static_cast<int>(std::min(left + step, width)),
                        static_cast<int>(std::min(top + step, height))};
      for (std::size_t component = 0; component < planes.size(); ++component) {
        const std::int64_t value = clamped(valueOf(planes, block, step, component), bits);
        out.push_back(static_cast<std::uint8_t>(value));
        if (bytesPerPixel == 2) out.push_back(static_cast<std::uint8_t>(value >> 8));
      }
    }
  }
  return out;
}

}  // namespace ei4::test
