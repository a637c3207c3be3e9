#include <cstdint>
#include <utility>

#include "check.h"
#include "text/geometry.h"
#include "text_checks.h"

namespace ei4::fuzz {

namespace {

struct Figure {
  tagRECT rect;
  tagPOINT a, b;
};

bool isIn(const tagRECT& r, tagPOINT p) {
  return p.x >= r.left && p.x < r.right && p.y >= r.top && p.y < r.bottom;
}

tagRECT normalised(tagRECT r) {
  if (r.left > r.right) std::swap(r.left, r.right);
  if (r.top > r.bottom) std::swap(r.top, r.bottom);
  return r;
}

bool hasPixels(const tagRECT& r) { return r.right > r.left && r.bottom > r.top; }

/// For numbers of 32 bits.
bool lineTouches(const Figure& figure) {
  const tagRECT r = normalised(figure.rect);
  if (!hasPixels(r)) return false;
  if (isIn(r, figure.a) || isIn(r, figure.b)) return true;
  const long px = r.right - r.left - 1, py = r.bottom - r.top - 1;
  long x1 = figure.a.x - r.left, y1 = figure.a.y - r.top, x2 = figure.b.x - r.left, y2 = figure.b.y - r.top;
  if (x2 < x1) x1 = px - x1, x2 = px - x2;
  if (y2 < y1) y1 = py - y1, y2 = py - y2;
  if (x2 < 0 || x1 > px || y2 < 0 || y1 > py) return false;
  if ((x1 >= 0 && x2 <= px) || (y1 >= 0 && y2 <= py)) return true;
  const auto within = [](long from, __int128 product, long by, long last) {
    const long crossing = from + static_cast<long>(product / by);
    const auto low =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(crossing)));
    return low >= 0 && low <= last;
  };
  const long dx = x2 - x1, dy = y2 - y1;
  const auto times = [](long a, long b) { return static_cast<__int128>(a) * b; };
  return within(x1, times(dx, -y1), dy, px) || within(y1, times(-x1, dy), dx, py) ||
         within(x1, times(py - y1, dx), dy, px) || within(y1, times(px - x1, dy), dx, py);
}

/// For numbers of 32 bits.
bool ovalTouches(const tagRECT& rect, tagPOINT c, long halfX, long halfY) {
  const tagRECT r = normalised(rect);
  if (!hasPixels(r)) return false;
  if (!isIn({r.left - halfX, r.top - halfY, r.right + halfX, r.bottom + halfY}, c)) return false;
  const long ddx = c.x < r.left ? r.left - c.x : c.x >= r.right ? c.x - (r.right - 1) : 0;
  const long ddy = c.y < r.top ? r.top - c.y : c.y >= r.bottom ? c.y - (r.bottom - 1) : 0;
  const auto square = [](long value) { return static_cast<double>(value) * static_cast<double>(value); };
  const double a2 = square(halfX), b2 = square(halfY);
  return a2 * b2 >= square(ddx) * b2 + square(ddy) * a2;
}

}  // namespace

void checkGeometry(Input& input) {
  const bool wide = (input.u8() & 1) != 0;
  const auto number = [&]() -> long { return wide ? input.i64() : input.i32(); };
  Figure figure{};
  figure.rect = {.left = number(), .top = number(), .right = number(), .bottom = number()};
  figure.a = {.x = number(), .y = number()};
  figure.b = {.x = number(), .y = number()};
  const auto orientation = static_cast<ORIENTATION>(input.i32());

  const CSize size(tagSIZE{figure.b.x, figure.b.y});
  require(OrientSizeBack(OrientSizeForw(size, orientation), orientation) == size,
          "an orientation can be undone");
  Src2Dst(size, input.f64(), input.f64(), orientation);
  const bool line = LineInRect(CRect(figure.rect), CPoint(figure.a), CPoint(figure.b));
  const bool oval = OvalInRect(CRect(figure.rect), CPoint(figure.a), size);
  if (wide) return;
  require(line == lineTouches(figure), "a line touches a rectangle");
  require(oval == ovalTouches(figure.rect, figure.a, figure.b.x, figure.b.y), "an oval touches a rectangle");
}

}  // namespace ei4::fuzz
