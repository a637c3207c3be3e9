#include "annotation/display_geometry.h"

#include <algorithm>
#include <climits>
#include <cmath>

#include "types/clamping.h"

namespace {

// Narrows a stretch to where start + t * d lies within [low, high].
void narrow(Way::Stretch& stretch, double start, double d, double low, double high) {
  if (d == 0) {
    if (start < low || start > high) stretch.any = false;
    return;
  }
  const double t0 = (low - start) / d;
  const double t1 = (high - start) / d;
  stretch.from = std::max(stretch.from, std::min(t0, t1));
  stretch.to = std::min(stretch.to, std::max(t0, t1));
  if (stretch.from > stretch.to) stretch.any = false;
}

}  // namespace

int Truncated(double value) {
  if (std::isnan(value)) return 0;
  return static_cast<int>(std::clamp<double>(value, INT_MIN, INT_MAX));
}

CPoint Moved(CPoint pt, long dx, long dy) {
  return {clampedToInt(long{clampedToInt(pt.x)} + clampedToInt(dx)),
          clampedToInt(long{clampedToInt(pt.y)} + clampedToInt(dy))};
}

CPoint Moved(CPoint pt, CSize by) { return Moved(pt, by.cx, by.cy); }

CRect PlaceAt(CPoint pt) { return {pt, pt}; }

CPoint MiddleOf(CPoint a, CPoint b) {
  return {clampedToInt((long{clampedToInt(a.x)} + clampedToInt(b.x)) / 2),
          clampedToInt((long{clampedToInt(a.y)} + clampedToInt(b.y)) / 2)};
}

Way::Way(CPoint from, CPoint to)
    : m_from(from),
      m_dx(static_cast<double>(to.x) - static_cast<double>(from.x)),
      m_dy(static_cast<double>(to.y) - static_cast<double>(from.y)),
      m_length(std::sqrt(m_dx * m_dx + m_dy * m_dy)) {}

CPoint Way::PointAt(double part, double whole) const {
  return Moved(m_from, Truncated(m_dx * part / whole), Truncated(m_dy * part / whole));
}

Way::Stretch Way::StretchNear(CSize size, double margin) const {
  Stretch stretch{0, 1, true};
  narrow(stretch, static_cast<double>(m_from.x), m_dx, -margin, static_cast<double>(size.cx) + margin);
  narrow(stretch, static_cast<double>(m_from.y), m_dy, -margin, static_cast<double>(size.cy) + margin);
  return stretch;
}

bool MayShow(const CRect& bounds, CSize size) {
  return bounds.right >= -kStrokeReach && bounds.left <= size.cx + kStrokeReach &&
         bounds.bottom >= -kStrokeReach && bounds.top <= size.cy + kStrokeReach;
}
