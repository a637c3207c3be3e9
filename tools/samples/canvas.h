#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "samples/geometry.h"
#include "samples/random.h"

namespace ei4::samples {

/// A picture of real numbers.
class Canvas {
 public:
  Canvas(int width, int height, double value = 0)
      : width_(width),
        height_(height),
        values_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), value) {}

  [[nodiscard]] int width() const { return width_; }
  [[nodiscard]] int height() const { return height_; }
  double& at(int x, int y) { return values_[index(x, y)]; }
  [[nodiscard]] double at(int x, int y) const { return values_[index(x, y)]; }

  /// Calls paint(point, value) for every pixel within `reach` of the line a-b: point in pixels, value to
  /// change.
  template <typename Paint>
  void paintAround(Point a, Point b, double reach, Paint paint) {
    const auto limited = [](double v, int most) {
      return static_cast<int>(std::clamp(v, 0.0, static_cast<double>(most)));
    };
    const int left = limited(std::min(a.x, b.x) - reach, width_);
    const int right = limited(std::max(a.x, b.x) + reach + 2, width_);
    const int top = limited(std::min(a.y, b.y) - reach, height_);
    const int bottom = limited(std::max(a.y, b.y) + reach + 2, height_);
    for (int y = top; y < bottom; ++y) {
      for (int x = left; x < right; ++x)
        paint(Point{static_cast<double>(x), static_cast<double>(y)}, at(x, y));
    }
  }

  /// Calls paint(point, value) for every pixel.
  template <typename Paint>
  void paintAll(Paint paint) {
    paintAround({0, 0}, {static_cast<double>(width_), static_cast<double>(height_)}, 0, paint);
  }

  /// Mean over (2 radius + 1)^2 pixels, `times` times; twice is already round and soft.
  void blur(int radius, int times);

  /// Rounded and clamped to 0..most.
  [[nodiscard]] std::vector<std::uint16_t> rounded(int most) const;

 private:
  [[nodiscard]] std::size_t index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
  }
  void blurRows(int radius);
  void transpose();

  int width_;
  int height_;
  std::vector<double> values_;
};

/// Normal noise of standard deviation 1 after blurring with radius 1: neighbouring pixels go together a
/// little.
Canvas softNoise(int width, int height, Random& random);

/// A fixed random landscape, -1..1, smooth, with hills about 1 wide.
class Landscape {
 public:
  explicit Landscape(std::uint64_t seed) : seed_(seed) {}
  [[nodiscard]] double at(Point p) const;
  /// Hills of half the width and half the height added again and again.
  [[nodiscard]] double rough(Point p, int octaves) const;

 private:
  [[nodiscard]] double corner(std::int64_t x, std::int64_t y) const;
  std::uint64_t seed_;
};

}  // namespace ei4::samples
