#pragma once

#include <algorithm>
#include <cmath>

namespace ei4::samples {

struct Point {
  double x = 0;
  double y = 0;
};

inline Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
inline Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
inline Point operator*(Point a, double f) { return {a.x * f, a.y * f}; }
inline double dot(Point a, Point b) { return a.x * b.x + a.y * b.y; }
inline double length(Point a) { return std::sqrt(dot(a, a)); }
inline Point between(Point a, Point b, double t) { return a + (b - a) * t; }

/// Sine and cosine by their series: the same bits on every machine, which the library's need not be.
inline Point direction(double radians) {
  const auto series = [](double x) {
    const double s = x * x;
    return x * (1 - s / 6 * (1 - s / 20 * (1 - s / 42 * (1 - s / 72 * (1 - s / 110 * (1 - s / 156))))));
  };
  constexpr double kPi = 3.14159265358979323846;
  const auto folded = [](double x) {  // into -pi .. pi, then the sine's symmetry brings it below pi / 2
    x -= 2 * kPi * std::floor(x / (2 * kPi) + 0.5);
    if (x > kPi / 2) return kPi - x;
    return x < -kPi / 2 ? -kPi - x : x;
  };
  return {series(folded(radians + kPi / 2)), series(folded(radians))};
}

/// The angle of (1, slope) for any slope, to about 1e-5.
inline double arcTangent(double slope) {
  const double a = std::abs(slope);
  const double t = a > 1 ? 1 / a : a;
  const double s = t * t;
  const double r = t * (0.9998660 + s * (-0.3302995 + s * (0.1801410 + s * (-0.0851330 + s * 0.0208351))));
  const double angle = a > 1 ? 1.5707963267948966 - r : r;
  return slope < 0 ? -angle : angle;
}

/// 0 below `from`, 1 above `to`, a smooth step between.
inline double smoothStep(double from, double to, double v) {
  const double t = std::clamp((v - from) / (to - from), 0.0, 1.0);
  return t * t * (3 - 2 * t);
}

/// Distances are positive inside a shape. This one is exact on the axes and close enough near the edge.
struct Ellipse {
  Point centre;
  double rx = 1;
  double ry = 1;
  double turn = 0;  ///< radians
};

inline double depthIn(const Ellipse& e, Point p) {
  const Point axis = direction(e.turn);
  const Point d = p - e.centre;
  const double u = dot(d, axis);
  const double v = d.y * axis.x - d.x * axis.y;
  const double k = std::sqrt(u * u / (e.rx * e.rx) + v * v / (e.ry * e.ry));
  const double k2 = std::sqrt(u * u / (e.rx * e.rx * e.rx * e.rx) + v * v / (e.ry * e.ry * e.ry * e.ry));
  return k2 == 0 ? std::min(e.rx, e.ry) : k * (1 - k) / k2;
}

/// A rod with round ends, its radius going from one to the other.
struct Rod {
  Point a;
  Point b;
  double ra = 1;
  double rb = 1;
};

struct RodPlace {
  double depth = 0;   ///< positive inside
  double along = 0;   ///< 0 at a, 1 at b
  double radius = 0;  ///< there
};

inline RodPlace placeIn(const Rod& rod, Point p) {
  const Point ab = rod.b - rod.a;
  const double square = dot(ab, ab);
  const double t = square == 0 ? 0 : std::clamp(dot(p - rod.a, ab) / square, 0.0, 1.0);
  const double radius = rod.ra + (rod.rb - rod.ra) * t;
  return {radius - length(p - between(rod.a, rod.b, t)), t, radius};
}

inline double depthIn(const Rod& rod, Point p) { return placeIn(rod, p).depth; }

/// How much of a pixel lies inside, for an edge `softness` wide.
inline double coverage(double depth, double softness) {
  return smoothStep(-softness / 2, softness / 2, depth);
}

}  // namespace ei4::samples
