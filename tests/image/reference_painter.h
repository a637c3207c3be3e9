// A second painter, one pixel at a time straight from the formulas: what the fast one must equal.
//
// It shares nothing with the fast one but the two enumerations: it goes over the destination's pixels, asks
// for each which displayed pixel it shows, and works the source value out anew.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "image/color_type.h"
#include "types/orientation.h"

namespace ei4::test {

inline int componentsOf(COLOR_TYPE format) { return format == COLOR_TYPE_C08 ? 3 : 1; }
inline int bytesOf(COLOR_TYPE format) {
  return format == COLOR_TYPE_C08 ? 3 : format == COLOR_TYPE_M16 ? 2 : 1;
}

/// A source picture, one number a component. Large ones may repeat a shorter run of samples.
struct Picture {
  COLOR_TYPE format;
  long cx, cy;
  std::vector<unsigned> samples;

  unsigned at(long x, long y, int c) const {
    if (x < 0 || y < 0 || x >= cx || y >= cy) return 0;
    return samples[static_cast<std::size_t>((y * cx + x) * componentsOf(format) + c) % samples.size()];
  }
};

/// A painting job; the table is empty or has an entry for every source value.
struct PaintRequest {
  COLOR_TYPE format;
  long cx, cy;                      // destination
  long offsetX, offsetY;            // of the displayed picture
  long shownX, shownY;              // its size, as shown
  long clipL, clipT, clipR, clipB;  // in the destination
  ORIENTATION orientation;
  unsigned background;
  int mode;
  std::vector<std::uint16_t> table;
};

class ReferencePainter {
 public:
  ReferencePainter(const Picture& source, const PaintRequest& request)
      : m_source(source), m_request(request) {
    const bool exchanged = request.orientation % 2 != 0;
    m_dcx = exchanged ? request.shownY : request.shownX;
    m_dcy = exchanged ? request.shownX : request.shownY;
    m_zoom = double(m_dcx + m_dcy) / double(source.cx + source.cy);
    findVisibleRegion();
  }

  /// Bytes of the destination: its pixels, followed by what a storing in larger source pixels needs besides.
  /// Bytes that nothing is stored in keep the value of `unwritten`.
  std::vector<std::uint8_t> paint(std::uint8_t unwritten) const {
    const long pixels = m_request.cx * m_request.cy;
    const int larger = std::max(bytesOf(m_source.format), bytesOf(m_request.format));
    std::vector<std::uint8_t> out(std::size_t(pixels * larger), unwritten);
    for (long i = 0; i < pixels; ++i) storeBackground(out, i);
    // In walking order, which matters where stored source pixels overlap.
    for (long v = m_v0; v < m_v1; ++v) {
      for (long u = m_u0; u < m_u1; ++u) {
        unsigned value[3] = {};
        for (int c = 0; c < componentsOf(m_source.format); ++c) value[c] = valueAt(u, v, c);
        store(out, u, v, value);
      }
    }
    return out;
  }

 private:
  struct Point {
    long x, y;
  };

  /// The displayed pixel, in source orientation, that the pixel (x, y) of the shown picture shows.
  Point shownAt(long x, long y) const {
    const long mx = m_request.shownX - 1 - x;
    const long my = m_request.shownY - 1 - y;
    const Point points[] = {{x, y}, {y, mx}, {mx, my}, {my, x}, {mx, y}, {my, mx}, {x, my}, {y, x}};
    return points[m_request.orientation];
  }

  /// The destination pixel that shows (u, v), by its distance from the first one.
  long placeOf(long u, long v) const { return m_places[std::size_t((v - m_v0) * (m_u1 - m_u0) + u - m_u0)]; }

  void findVisibleRegion() {
    bool any = false;
    forEachVisible([&](Point shown, long /*place*/) {
      m_u0 = any ? std::min(m_u0, shown.x) : shown.x;
      m_v0 = any ? std::min(m_v0, shown.y) : shown.y;
      m_u1 = any ? std::max(m_u1, shown.x + 1) : shown.x + 1;
      m_v1 = any ? std::max(m_v1, shown.y + 1) : shown.y + 1;
      any = true;
    });
    m_places.resize(std::size_t((m_u1 - m_u0) * (m_v1 - m_v0)));
    forEachVisible([&](Point shown, long place) {
      m_places[std::size_t((shown.y - m_v0) * (m_u1 - m_u0) + shown.x - m_u0)] = place;
    });
  }

  template <class Visit>
  void forEachVisible(Visit visit) const {
    const PaintRequest& r = m_request;
    for (long y = 0; y < r.cy; ++y) {
      for (long x = 0; x < r.cx; ++x) {
        const long sx = x - r.offsetX;
        const long sy = y - r.offsetY;
        if (sx < 0 || sy < 0 || sx >= r.shownX || sy >= r.shownY) continue;
        if (x < r.clipL || y < r.clipT || x >= r.clipR || y >= r.clipB) continue;
        visit(shownAt(sx, sy), y * r.cx + x);
      }
    }
  }

  unsigned valueAt(long u, long v, int c) const {
    if (m_request.mode == 0) return m_source.at(u * m_source.cx / m_dcx, v * m_source.cy / m_dcy, c);
    if (m_source.cx > m_dcx || m_source.cy > m_dcy) {
      const long r = long(m_zoom);
      if (r != 0 && double(r) == m_zoom) {
        return m_source.at(replicated(u, m_u0, m_source.cx, m_dcx, r),
                           replicated(v, m_v0, m_source.cy, m_dcy, r), c);
      }
      return averaged(u, v, c);
    }
    return interpolated(u, v, c);
  }

  static long replicated(long at, long first, long source, long shown, long r) {
    long index = first * source / shown;
    long counter = r - first % r;
    for (long i = first; i < at; ++i) {
      if (--counter == 0) {
        ++index;
        counter = r;
      }
    }
    return index;
  }

  /// How many units of every source pixel the displayed pixel `at` covers, found unit by unit.
  static std::vector<Point> overlap(long at, long first, long counter, long unit, long refill, long index) {
    std::vector<Point> weights;
    for (long i = first; i <= at; ++i) {
      weights.clear();
      for (long left = unit; left > 0; --left) {
        if (counter < 1) {  // only a counter that was halved to nothing starts like this
          counter += refill;
          ++index;
        }
        if (weights.empty() || weights.back().x != index) weights.push_back({index, 0});
        ++weights.back().y;
        if (--counter < 1) {
          counter += refill;
          ++index;
        }
      }
    }
    return weights;
  }

  unsigned averaged(long u, long v, int c) const {
    long scx = m_source.cx, scy = m_source.cy, dcx = m_dcx, dcy = m_dcy;
    long columnCounter = dcx - (m_u0 * scx) % dcx;
    long rowCounter = dcy - (m_v0 * scy) % dcy;
    const long column = m_u0 * scx / dcx;
    const long row = m_v0 * scy / dcy;
    long divisor = scx * scy;
    while (divisor > 0x1010100) {
      rowCounter /= 2, scy /= 2, dcy /= 2;
      if (divisor <= 0x2020201) {
        divisor /= 2;
        break;
      }
      columnCounter /= 2, scx /= 2, dcx /= 2;
      divisor /= 4;
    }
    double sum = 0;
    const auto columns = overlap(u, m_u0, columnCounter, scx, dcx, column);
    for (const Point& y : overlap(v, m_v0, rowCounter, scy, dcy, row)) {
      for (const Point& x : columns) sum += double(m_source.at(x.x, y.x, c)) * double(x.y) * double(y.y);
    }
    return unsigned(sum / double(divisor));
  }

  struct Phase {
    long index, phase, denominator;
  };

  Phase phaseOf(long at, long first, long source, long shown) const {
    const int r = int(m_zoom + 0.01);
    long denominator = r, step = 1;
    if (std::abs(r - m_zoom) >= 0.01) {
      denominator = shown;
      step = source;
      while (denominator > 4095) denominator /= 2, step /= 2;
    }
    Phase p{first * source / shown, denominator / 2 - (first * step) % denominator, denominator};
    if (p.phase < 0) p.phase += denominator, ++p.index;
    for (long i = first; i < at; ++i) {
      p.phase -= step;
      if (p.phase < 1) p.phase += denominator, ++p.index;
    }
    return p;
  }

  unsigned interpolated(long u, long v, int c) const {
    const Phase x = phaseOf(u, m_u0, m_source.cx, m_dcx);
    const Phase y = phaseOf(v, m_v0, m_source.cy, m_dcy);
    const auto p = [&](long row, long column) {
      const long clampedRow = std::max(0L, std::min(row, m_source.cy - 1));
      const long clampedColumn = std::max(0L, std::min(column, m_source.cx - 1));
      return double(m_source.at(clampedColumn, clampedRow, c));
    };
    const double fx = double(x.phase), fy = double(y.phase);
    const double DX = double(x.denominator), DY = double(y.denominator);
    return unsigned((p(y.index - 1, x.index - 1) * fy * fx + p(y.index - 1, x.index) * fy * (DX - fx) +
                     p(y.index, x.index - 1) * (DY - fy) * fx + p(y.index, x.index) * (DY - fy) * (DX - fx)) /
                    (DX * DY));
  }

  static void put(std::vector<std::uint8_t>& out, long at, COLOR_TYPE format, const unsigned* components) {
    if (at < 0) return;
    if (format == COLOR_TYPE_M16) {
      const auto word = std::uint16_t(components[0]);
      std::memcpy(&out[std::size_t(at)], &word, 2);
      return;
    }
    for (int c = 0; c < componentsOf(format); ++c) out[std::size_t(at + c)] = std::uint8_t(components[c]);
  }

  void storeBackground(std::vector<std::uint8_t>& out, long pixel) const {
    const unsigned b = m_request.background;
    unsigned components[3] = {b >> 16 & 0xFF, b >> 8 & 0xFF, b & 0xFF};
    if (m_request.format != COLOR_TYPE_C08)
      components[0] = (components[0] + 2 * components[1] + components[2]) >> 2;
    put(out, pixel * bytesOf(m_request.format), m_request.format, components);
  }

  void store(std::vector<std::uint8_t>& out, long u, long v, const unsigned* value) const {
    const COLOR_TYPE from = m_source.format, to = m_request.format;
    const std::vector<std::uint16_t>& table = m_request.table;
    if (table.empty() && to == COLOR_TYPE_M08 && from != COLOR_TYPE_M08) {
      const long start = placeOf(m_u0, m_v0);
      put(out, start + (placeOf(u, v) - start) * bytesOf(from), from, value);
      return;
    }
    unsigned stored[3];
    for (int c = 0; c < 3; ++c) {
      unsigned index = value[c];
      if (from != COLOR_TYPE_C08) index = value[0];
      if (from == COLOR_TYPE_C08 && to != COLOR_TYPE_C08) index = (value[0] + 2 * value[1] + value[2]) >> 2;
      stored[c] = table.empty() ? index : table[index];
    }
    put(out, placeOf(u, v) * bytesOf(to), to, stored);
  }

  const Picture& m_source;
  const PaintRequest& m_request;
  long m_dcx, m_dcy;  // displayed size in source orientation
  double m_zoom;
  long m_u0 = 0, m_u1 = 0, m_v0 = 0, m_v1 = 0;  // what is visible of it
  std::vector<long> m_places;
};

}  // namespace ei4::test
