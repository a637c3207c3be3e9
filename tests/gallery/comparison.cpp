#include "gallery/comparison.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <stdexcept>

namespace ei4::test {

namespace {

using Colour = std::array<unsigned char, 3>;

constexpr Colour kWrong{255, 0, 0};
constexpr Colour kOtherGlyphs{255, 255, 0};
constexpr int kFar = 3;  // pixels

std::size_t byteAt(const Raster& raster, int x, int y) {
  return 3 *
         (static_cast<std::size_t>(y) * static_cast<std::size_t>(raster.width) + static_cast<std::size_t>(x));
}

void requireInside(const Raster& raster, const Box& box) {
  if (box.left < 0 || box.top < 0 || box.right > raster.width || box.bottom > raster.height ||
      box.left >= box.right || box.top >= box.bottom) {
    throw std::out_of_range("a box that is not inside the picture");
  }
}

Raster blank(int width, int height) {
  Raster raster{width, height, {}};
  raster.bytes.resize(byteAt(raster, 0, height));
  return raster;
}

Colour get(const Raster& raster, int x, int y) {
  const std::size_t at = byteAt(raster, x, y);
  return {raster.bytes[at], raster.bytes[at + 1], raster.bytes[at + 2]};
}

// The sums of the three colours over each pixel of a box and its neighbours in it.
class Blurred {
 public:
  Blurred(const Raster& raster, const Box& box)
      : m_width(box.right - box.left), m_height(box.bottom - box.top) {
    for (int y = 0; y < m_height; ++y) {
      for (int x = 0; x < m_width; ++x) m_sums.push_back(around(raster, box, box.left + x, box.top + y));
    }
  }

  /// How much the other one differs when it is moved.
  long distanceTo(const Blurred& other, int right, int down) const {
    long sum = 0;
    for (int y = down; y < m_height; ++y) {
      for (int x = right; x < m_width; ++x) sum += std::labs(at(x, y) - other.at(x - right, y - down));
    }
    return sum;
  }

 private:
  static long around(const Raster& raster, const Box& box, int x, int y) {
    long sum = 0;
    for (int row = std::max(y - 1, box.top); row <= std::min(y + 1, box.bottom - 1); ++row) {
      for (int column = std::max(x - 1, box.left); column <= std::min(x + 1, box.right - 1); ++column) {
        for (const unsigned char value : get(raster, column, row)) sum += value;
      }
    }
    return sum;
  }

  long at(int x, int y) const {
    return m_sums[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
                  static_cast<std::size_t>(x)];
  }

  int m_width;
  int m_height;
  std::vector<long> m_sums;
};

bool passes(const Box& text, const Raster& actual, const Raster& expected) {
  const Blurred wanted(expected, text);
  const long moved = std::min(wanted.distanceTo(wanted, kFar, 0), wanted.distanceTo(wanted, 0, kFar));
  return 2 * wanted.distanceTo(Blurred(actual, text), 0, 0) <= moved;
}

bool holds(const Box& box, int x, int y) {
  return x >= box.left && x < box.right && y >= box.top && y < box.bottom;
}

void put(Raster& raster, int x, int y, const Colour& colour) {
  std::copy(colour.begin(), colour.end(),
            raster.bytes.begin() + static_cast<std::ptrdiff_t>(byteAt(raster, x, y)));
}

}  // namespace

Raster cutOut(const Raster& picture, const Box& box) {
  requireInside(picture, box);
  Raster part = blank(box.right - box.left, box.bottom - box.top);
  for (int y = 0; y < part.height; ++y) {
    for (int x = 0; x < part.width; ++x) put(part, x, y, get(picture, box.left + x, box.top + y));
  }
  return part;
}

Difference compare(const Raster& actual, const Raster& expected, const std::vector<Box>& texts) {
  if (actual.width != expected.width || actual.height != expected.height) {
    throw std::runtime_error("pictures of different sizes");
  }
  Difference difference;
  difference.shown = blank(3 * expected.width, expected.height);
  for (int y = 0; y < expected.height; ++y) {
    for (int x = 0; x < expected.width; ++x) {
      put(difference.shown, x, y, get(expected, x, y));
      put(difference.shown, expected.width + x, y, get(actual, x, y));
      if (get(actual, x, y) == get(expected, x, y)) continue;
      const bool inText =
          std::any_of(texts.begin(), texts.end(), [&](const Box& box) { return holds(box, x, y); });
      ++(inText ? difference.textPixels : difference.pixels);
      put(difference.shown, 2 * expected.width + x, y, inText ? kOtherGlyphs : kWrong);
    }
  }
  for (const Box& text : texts) {
    requireInside(expected, text);
    if (!passes(text, actual, expected)) ++difference.texts;
  }
  return difference;
}

}  // namespace ei4::test
