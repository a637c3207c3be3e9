#include "text/geometry.h"

#include <climits>
#include <utility>

#include "types/wrapping.h"

namespace {

// `value` truncated toward zero; INT_MIN when it is not a number or the result does not fit.
constexpr int toInt(double value) {
  return value > -2147483649.0 && value < 2147483648.0 ? static_cast<int>(value) : INT_MIN;
}

bool hasPixels(const CRect& normalized) { return normalized.Width() >= 1 && normalized.Height() >= 1; }

bool isWithin(long value, long last) { return value >= 0 && value <= last; }

// One coordinate of the segment, counted from the rectangle's first pixel in the direction in which the
// segment runs, so that `from` is not above `to`.
struct Extent {
  long from;
  long to;
  long last;  // the rectangle's last pixel

  Extent(long a, long b, long origin, long length)
      : from(wrappingSubtract(a, origin)), to(wrappingSubtract(b, origin)), last(length - 1) {
    if (to >= from) return;
    from = wrappingSubtract(last, from);
    to = wrappingSubtract(last, to);
  }

  bool passesBy() const { return to < 0 || from > last; }
  bool liesInside() const { return from >= 0 && to <= last; }
  long length() const { return wrappingSubtract(to, from); }
};

// Does the segment touch the rectangle where `across` is `edge`? Neither extent has the length 0.
bool crossesAt(long edge, const Extent& across, const Extent& along) {
  // Products of two longs need 128 bits; the quotient comes back to the coordinates' 64.
  const __int128 product = static_cast<__int128>(wrappingSubtract(edge, across.from)) * along.length();
  const long moved = static_cast<long>(product / across.length());
  // Quirk crossing-keeps-low-word
  return isWithin(low32(wrappingAdd(along.from, moved)), along.last);
}

// How far a coordinate lies outside the pixels from first to end - 1; 0 inside.
double distanceOutside(long value, long first, long end) {
  if (value < first) return static_cast<double>(wrappingSubtract(first, value));
  if (value >= end) return static_cast<double>(wrappingSubtract(value, end - 1));
  return 0;
}

double square(double value) { return value * value; }

}  // namespace

CSize OrientSizeForw(CSize size, ORIENTATION orientation) {
  const CSize minus = -size;
  switch (orientation) {
    case ORIENTATION_AS_STORED:
      return size;
    case ORIENTATION_QUARTER_TURN:
      return tagSIZE{minus.cy, size.cx};
    case ORIENTATION_HALF_TURN:
      return minus;
    case ORIENTATION_THREE_QUARTERS:
      return tagSIZE{size.cy, minus.cx};
    case ORIENTATION_MIRROR_LEFT_RIGHT:
      return tagSIZE{minus.cx, size.cy};
    case ORIENTATION_OTHER_DIAGONAL:
      return tagSIZE{minus.cy, minus.cx};
    case ORIENTATION_MIRROR_TOP_BOTTOM:
      return tagSIZE{size.cx, minus.cy};
    case ORIENTATION_MAIN_DIAGONAL:
      return tagSIZE{size.cy, size.cx};
  }
  return size;
}

CSize OrientSizeBack(CSize size, ORIENTATION orientation) {
  switch (orientation) {  // the mirrorings undo themselves, the two quarter turns each other
    case ORIENTATION_QUARTER_TURN:
      return OrientSizeForw(size, ORIENTATION_THREE_QUARTERS);
    case ORIENTATION_THREE_QUARTERS:
      return OrientSizeForw(size, ORIENTATION_QUARTER_TURN);
    default:
      return OrientSizeForw(size, orientation);
  }
}

CSize Src2Dst(CSize size, double zoomX, double zoomY, ORIENTATION orientation) {
  const int width = toInt(static_cast<double>(size.cx) * zoomX + 0.5);
  const int height = toInt(static_cast<double>(size.cy) * zoomY + 0.5);
  return ExchangesSides(orientation) ? CSize(height, width) : CSize(width, height);
}

bool LineInRect(CRect rect, CPoint a, CPoint b) {
  rect.NormalizeRect();
  if (!hasPixels(rect)) return false;
  if (rect.PtInRect(a) || rect.PtInRect(b)) return true;

  const Extent x(a.x, b.x, rect.left, rect.Width());
  const Extent y(a.y, b.y, rect.top, rect.Height());
  if (x.passesBy() || y.passesBy()) return false;
  if (x.liesInside() || y.liesInside()) return true;
  // Neither length is 0 here: a point that does not pass by lies inside.
  return crossesAt(0, y, x) || crossesAt(0, x, y) || crossesAt(y.last, y, x) || crossesAt(x.last, x, y);
}

bool OvalInRect(CRect rect, CPoint center, CSize halfAxes) {
  rect.NormalizeRect();
  if (!hasPixels(rect)) return false;
  CRect reach = rect;
  reach.InflateRect(halfAxes);
  if (!reach.PtInRect(center)) return false;

  const double dx2 = square(distanceOutside(center.x, rect.left, rect.right));
  const double dy2 = square(distanceOutside(center.y, rect.top, rect.bottom));
  const double a2 = square(static_cast<double>(halfAxes.cx));
  const double b2 = square(static_cast<double>(halfAxes.cy));
  return a2 * b2 >= dx2 * b2 + dy2 * a2;
}
