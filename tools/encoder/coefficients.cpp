#include "encoder/coefficients.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "encoder/forward_transform.h"

namespace ei4::tools {

namespace {

template <typename Sample>
using Plane = std::vector<Sample>;

template <typename Sample>
std::vector<Plane<Sample>> greyPlane(std::span<const unsigned char> pixels, std::size_t count,
                                     int bytesPerPixel) {
  Plane<Sample> plane(count);
  for (std::size_t i = 0; i < count; ++i) {
    std::uint16_t value = pixels[i * static_cast<std::size_t>(bytesPerPixel)];
    if (bytesPerPixel == 2) std::memcpy(&value, pixels.data() + 2 * i, 2);
    plane[i] = static_cast<Sample>(value);  // 16-bit samples wrap; the decoder's stores undo that
  }
  return {plane};
}

/// Green with a quarter of each difference, then the differences of the first and last component from green.
template <typename Sample>
std::vector<Plane<Sample>> colourPlanes(std::span<const unsigned char> pixels, std::size_t count) {
  std::vector<Plane<Sample>> planes(3, Plane<Sample>(count));
  for (std::size_t i = 0; i < count; ++i) {
    const int green = pixels[3 * i + 1];
    const int first = pixels[3 * i] - green;
    const int last = pixels[3 * i + 2] - green;
    planes[0][i] = static_cast<Sample>(green + ((first + last) >> 2));
    planes[1][i] = static_cast<Sample>(first);
    planes[2][i] = static_cast<Sample>(last);
  }
  return planes;
}

int trailingZeros(int v, int most) {
  return v == 0 ? most : std::min(most, std::countr_zero(static_cast<unsigned>(v)));
}

/// An order is the number of trailing zero bits that both coordinates share, capped at the level count.
template <typename Sample>
PlaneCoefficients sorted(const Plane<Sample>& plane, int width, int height, int levels) {
  PlaneCoefficients orders(static_cast<std::size_t>(levels) + 1);
  for (int y = 0; y < height; ++y) {
    const Sample* row = plane.data() + static_cast<std::ptrdiff_t>(y) * width;
    const int rowOrder = trailingZeros(y, levels);
    for (int x = 0; x < width; ++x) {
      const int order = trailingZeros(x, rowOrder);
      orders[static_cast<std::size_t>(order)].push_back(Coefficient(row[x]));
    }
  }
  return orders;
}

template <typename Sample>
std::vector<PlaneCoefficients> transformed(std::span<const unsigned char> pixels, const StreamHeader& header,
                                           int levels) {
  const auto count = static_cast<std::size_t>(header.width) * static_cast<std::size_t>(header.height);
  std::vector<Plane<Sample>> planes = header.bytesPerPixel == 3
                                          ? colourPlanes<Sample>(pixels, count)
                                          : greyPlane<Sample>(pixels, count, header.bytesPerPixel);
  std::vector<PlaneCoefficients> result;
  for (Plane<Sample>& plane : planes) {
    forwardTransform(plane.data(), header.width, header.height, levels);
    result.push_back(sorted(plane, header.width, header.height, levels));
  }
  return result;
}

}  // namespace

std::vector<PlaneCoefficients> transformPicture(std::span<const unsigned char> pixels,
                                                const StreamHeader& header, int levels) {
  return usesShortCoefficients(header) ? transformed<std::int16_t>(pixels, header, levels)
                                       : transformed<std::int32_t>(pixels, header, levels);
}

}  // namespace ei4::tools
