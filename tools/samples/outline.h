#pragma once

#include <cstddef>
#include <vector>

#include "samples/geometry.h"

namespace ei4::samples {

/// A closed outline of straight pieces.
using Outline = std::vector<Point>;

/// Rounds the corners off by cutting each one `times` times a quarter away from either end of its sides.
inline Outline rounded(Outline outline, int times) {
  for (; times > 0; --times) {
    Outline finer;
    for (std::size_t i = 0; i < outline.size(); ++i) {
      const Point from = outline[i];
      const Point to = outline[(i + 1) % outline.size()];
      finer.push_back(between(from, to, 0.25));
      finer.push_back(between(from, to, 0.75));
    }
    outline = finer;
  }
  return outline;
}

/// The distance to the nearest piece, positive inside.
inline double depthIn(const Outline& outline, Point p) {
  bool isInside = false;
  double nearest = 1e9;
  for (std::size_t i = 0; i < outline.size(); ++i) {
    const Point a = outline[i];
    const Point b = outline[(i + 1) % outline.size()];
    nearest = std::min(nearest, -placeIn(Rod{a, b, 0, 0}, p).depth);
    const bool crosses = (a.y > p.y) != (b.y > p.y);
    if (crosses && p.x < a.x + (b.x - a.x) * (p.y - a.y) / (b.y - a.y)) isInside = !isInside;
  }
  return isInside ? nearest : -nearest;
}

}  // namespace ei4::samples
