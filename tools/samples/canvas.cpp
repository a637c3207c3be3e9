#include "samples/canvas.h"

#include <algorithm>
#include <cmath>

namespace ei4::samples {

void Canvas::blurRows(int radius) {
  std::vector<double> row(static_cast<std::size_t>(width_));
  for (int y = 0; y < height_; ++y) {
    const auto source = [&](int x) { return at(std::clamp(x, 0, width_ - 1), y); };
    double sum = 0;
    for (int x = -radius; x <= radius; ++x) sum += source(x);
    for (int x = 0; x < width_; ++x) {
      row[static_cast<std::size_t>(x)] = sum / (2 * radius + 1);
      sum += source(x + radius + 1) - source(x - radius);
    }
    for (int x = 0; x < width_; ++x) at(x, y) = row[static_cast<std::size_t>(x)];
  }
}

void Canvas::transpose() {
  Canvas turned(height_, width_);
  for (int y = 0; y < height_; ++y) {
    for (int x = 0; x < width_; ++x) turned.at(y, x) = at(x, y);
  }
  *this = std::move(turned);
}

void Canvas::blur(int radius, int times) {
  for (int pass = 0; pass < 2; ++pass) {
    for (int i = 0; i < times; ++i) blurRows(radius);
    transpose();
  }
}

std::vector<std::uint16_t> Canvas::rounded(int most) const {
  std::vector<std::uint16_t> result(values_.size());
  std::ranges::transform(values_, result.begin(), [most](double value) {
    return static_cast<std::uint16_t>(std::clamp(std::floor(value + 0.5), 0.0, static_cast<double>(most)));
  });
  return result;
}

Canvas softNoise(int width, int height, Random& random) {
  Canvas noise(width, height);
  noise.paintAll(
      [&random](Point, double& value) { value = 3 * random.normal(); });  // the mean of 9 divides by 3
  noise.blur(1, 1);
  return noise;
}

double Landscape::corner(std::int64_t x, std::int64_t y) const {
  const std::uint64_t place =
      static_cast<std::uint64_t>(x) * 0x9E3779B97F4A7C15U + static_cast<std::uint64_t>(y);
  return static_cast<double>(Random::scrambled(Random::scrambled(place) ^ seed_) >> 11) / 4503599627370496.0 -
         1;
}

double Landscape::at(Point p) const {
  const auto x = static_cast<std::int64_t>(std::floor(p.x));
  const auto y = static_cast<std::int64_t>(std::floor(p.y));
  const double u = smoothStep(0, 1, p.x - static_cast<double>(x));
  const double v = smoothStep(0, 1, p.y - static_cast<double>(y));
  const double top = corner(x, y) + (corner(x + 1, y) - corner(x, y)) * u;
  const double bottom = corner(x, y + 1) + (corner(x + 1, y + 1) - corner(x, y + 1)) * u;
  return top + (bottom - top) * v;
}

double Landscape::rough(Point p, int octaves) const {
  double sum = 0;
  double height = 1;
  double total = 0;
  for (int i = 0; i < octaves; ++i) {
    sum += height * at(p);
    total += height;
    height /= 2;
    p = p * 2.03 + Point{17.3, 9.1};
  }
  return sum / total;
}

}  // namespace ei4::samples
