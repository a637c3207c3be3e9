#include "draw/outline.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <numbers>

namespace ei4 {

namespace {

constexpr double kSame = 1e-12;  // points that are nearer than this in x and in y are one point
constexpr double kReach = 1.25;  // distance from which a segment covers nothing
constexpr double kWhole = 0.25;  // distance up to which it covers a pixel wholly
constexpr double kBeyond = 1.0;  // how far beyond the ends of segments and runs pixels are covered
constexpr double kSlack = 0.01;  // for bounds that are rounded; the pixels within are each decided exactly
constexpr int kLargestRadius = 16384;      // 50 points for each pixel of it
constexpr long kFarthestVertex = 1 << 30;  // exact in all that is computed

bool samePoint(OutlinePoint a, OutlinePoint b) {
  return std::fabs(a.x - b.x) < kSame && std::fabs(a.y - b.y) < kSame;
}

bool goesDown(OutlinePoint from, OutlinePoint to) {
  return to.y > from.y || (std::fabs(to.y - from.y) < kSame && to.x > from.x);
}

double squaredDistance(OutlinePoint from, OutlinePoint to, double x, double y) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  const double along = dx * (x - from.x) + dy * (y - from.y);
  const double length = dx * dx + dy * dy;
  if (along <= 0.0 || along >= length) {
    const OutlinePoint end = along <= 0.0 ? from : to;
    return (x - end.x) * (x - end.x) + (y - end.y) * (y - end.y);
  }
  const double across = dx * (y - from.y) - dy * (x - from.x);
  return 1.0 / length * across * across;
}

double coverage(double squared) {
  if (squared <= kWhole * kWhole) return 1.0;
  const double rest = std::sqrt(squared) - kReach;
  return rest * rest;
}

// Can MagickCore draw the polygon in some tenths of a second?
bool isAffordable(std::span<const tagPOINT> points, tagSIZE picture) {
  constexpr double kMostQuestions = 1e8;
  return libraryQuestions(points, picture) <= kMostQuestions;
}

}  // namespace

double libraryQuestions(std::span<const tagPOINT> points, tagSIZE picture) {
  if (points.empty()) return 0;
  constexpr double kBesides = 20;  // what a pixel costs by itself, in edges
  const auto extent = [&](long tagPOINT::*along, long side) {
    const auto [low, high] = std::minmax_element(points.begin(), points.end(),
                                                 [along](auto& a, auto& b) { return a.*along < b.*along; });
    return static_cast<double>(std::clamp((*high).*along, 0L, side) - std::clamp((*low).*along, 0L, side) +
                               1);
  };
  const double pixels = extent(&tagPOINT::x, picture.cx) * extent(&tagPOINT::y, picture.cy);
  return pixels * (static_cast<double>(points.size()) + kBesides);
}

Outline::Outline(std::span<const OutlinePoint> points) {
  bool down = false;
  OutlinePoint from = points.front();
  for (const OutlinePoint to : points.subspan(1)) {
    if (samePoint(from, to)) continue;
    if (m_runs.empty() || goesDown(from, to) != down) {
      down = goesDown(from, to);
      m_runs.push_back({{from}, from.x, from.x});
    }
    Run& run = m_runs.back();
    run.points.push_back(to);
    run.left = std::min(run.left, to.x);
    run.right = std::max(run.right, to.x);
    from = to;
  }
  for (Run& run : m_runs) {
    if (!goesDown(run.points[0], run.points[1])) std::reverse(run.points.begin(), run.points.end());
  }
}

std::optional<Outline> Outline::line(int x1, int y1, int x2, int y2) {
  if (x1 == x2 && y1 == y2) return std::nullopt;
  const OutlinePoint ends[] = {{double(x1), double(y1)}, {double(x2), double(y2)}};
  return Outline(ends);
}

std::optional<Outline> Outline::ellipse(int cx, int cy, int rx, int ry) {
  const int radius = std::max(rx, ry);
  if (rx <= 0 || ry <= 0 || radius > kLargestRadius) return std::nullopt;
  constexpr double kTurn = 2.0 * std::numbers::pi;
  const double step = 0.125 / radius;
  std::vector<OutlinePoint> points;
  points.reserve(static_cast<std::size_t>(kTurn / step) + 3);
  double angle = 0.0;
  while (angle < kTurn) {
    points.push_back({std::cos(angle) * rx + cx, std::sin(angle) * ry + cy});
    angle += step;  // and not a multiple of it, which would round otherwise
  }
  points.push_back(points.front());
  return Outline(points);
}

std::optional<Outline> Outline::polyline(std::span<const tagPOINT> points) {
  auto outline = ofVertices(points);
  if (!outline) return std::nullopt;
  // It has one more edge, which is not drawn: from its end back to its start.
  const auto ghostBottom = static_cast<double>(std::max(points.front().y, points.back().y));
  if (outline->hasHiddenEdges(ghostBottom)) return std::nullopt;
  return outline;
}

std::optional<Outline> Outline::polygon(std::span<const tagPOINT> points, tagSIZE picture) {
  if (points.size() < 3) return std::nullopt;
  std::vector<tagPOINT> closed(points.begin(), points.end());
  closed.push_back(points.front());
  auto outline = ofVertices(closed);
  if (outline && isAffordable(points, picture) && outline->hasHiddenEdges(std::nullopt)) return std::nullopt;
  return outline;
}

std::optional<Outline> Outline::ofVertices(std::span<const tagPOINT> points) {
  std::vector<OutlinePoint> vertices;
  vertices.reserve(points.size());
  for (const tagPOINT& point : points) {
    if (std::max(point.x, point.y) > kFarthestVertex || std::min(point.x, point.y) < -kFarthestVertex) {
      return std::nullopt;
    }
    vertices.push_back({static_cast<double>(point.x), static_cast<double>(point.y)});
  }
  if (vertices.size() < 2) return std::nullopt;
  Outline outline(vertices);
  if (outline.m_runs.empty()) return std::nullopt;
  return outline;
}

// MagickCore drops the runs that a row has passed while it asks the row's first pixels, and takes the run behind
// each dropped one for asked. With few runs ending together that is over before the first pixel that a figure can
// cover, two columns on; else some pixels at the left are missing, which is left to MagickCore itself.
bool Outline::hasHiddenEdges(std::optional<double> ghostBottom) const {
  constexpr int kMostEndingTogether = 7;
  double left = m_runs.front().left;
  std::map<double, int> endings;
  const auto count = [&endings](double bottom) {
    return ++endings[std::max(bottom, -2.0)] >
           kMostEndingTogether;  // above the picture: all before its first row
  };
  bool tooMany = ghostBottom && count(*ghostBottom);
  for (const Run& run : m_runs) {
    left = std::min(left, run.left);
    tooMany = count(run.points.back().y) || tooMany;
  }
  return tooMany || left < 2.0;
}

long Outline::pointCount() const {
  std::size_t count = 0;
  for (const Run& run : m_runs) count += run.points.size();
  return static_cast<long>(count);
}

long Outline::firstRow() const {
  double top = m_runs.front().points.front().y;
  for (const Run& run : m_runs) top = std::min(top, run.points.front().y);
  return static_cast<long>(std::floor(top - kBeyond));
}

long Outline::lastRow() const {
  double bottom = m_runs.front().points.back().y;
  for (const Run& run : m_runs) bottom = std::max(bottom, run.points.back().y);
  return static_cast<long>(std::ceil(bottom + kBeyond));
}

const std::vector<Coverage>& Outline::row(long y, long columns) {
  for (const Coverage& pixel : m_row) m_slots[static_cast<std::size_t>(pixel.x)] = 0;
  m_row.clear();
  m_slots.resize(static_cast<std::size_t>(columns), 0);
  const auto line = static_cast<double>(y);
  for (Run& run : m_runs) {
    const auto& points = run.points;
    while (run.first < points.size() && line > points[run.first].y + kBeyond) ++run.first;
    for (std::size_t i = run.first; i < points.size() && line > points[i - 1].y - kBeyond; ++i) {
      cover(run, points[i - 1], points[i], y, columns);
    }
  }
  return m_row;
}

void Outline::cover(const Run& run, OutlinePoint upper, OutlinePoint lower, long y, long columns) {
  const auto line = static_cast<double>(y);
  // Only the part of the segment that is within reach of the row covers anything in it.
  double left = std::min(upper.x, lower.x);
  double right = std::max(upper.x, lower.x);
  if (lower.y - upper.y > kReach) {
    const double slope = (lower.x - upper.x) / (lower.y - upper.y);
    const double a = upper.x + (line - kReach - upper.y) * slope;
    const double b = upper.x + (line + kReach - upper.y) * slope;
    left = std::max(left, std::min(a, b));
    right = std::min(right, std::max(a, b));
  }
  left = std::max(left - kReach - kSlack, 0.0);
  right = std::min(right + kReach + kSlack, static_cast<double>(columns - 1));
  if (!(left <= right)) return;

  for (long x = static_cast<long>(left); x <= static_cast<long>(right); ++x) {
    const auto column = static_cast<double>(x);
    if (column <= run.left - kBeyond || column > run.right + kBeyond) continue;
    const double squared = squaredDistance(upper, lower, column, line);
    if (squared >= kReach * kReach) continue;
    const double amount = coverage(squared);
    std::size_t& slot = m_slots[static_cast<std::size_t>(x)];
    if (slot == 0) {
      m_row.push_back({x, amount});
      slot = m_row.size();
    } else {
      m_row[slot - 1].amount = std::max(m_row[slot - 1].amount, amount);
    }
  }
}

}  // namespace ei4
