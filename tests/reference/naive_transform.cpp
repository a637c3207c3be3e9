#include "reference/naive_transform.h"

#include <algorithm>

namespace ei4::test {
namespace {

// Sums are 32-bit values, so a damaged stream can make them wrap.
std::int32_t wrapped(std::int64_t value) { return static_cast<std::int32_t>(value); }
std::int32_t half(std::int64_t sum) {
  const std::int32_t v = wrapped(sum);
  return wrapped(std::int64_t{v} - (v < 0 ? 1 : 0) + 1) >> 1;
}
std::int32_t quarter(std::int64_t sum) {
  const std::int32_t v = wrapped(sum);
  return wrapped(std::int64_t{v} - (v < 0 ? 1 : 0) + 2) >> 2;
}

// Samples 0, s, 2s, ... of one row or one column.
class Line {
 public:
  Line(NaivePlane& plane, int fixed, int step, bool vertical)
      : m_Plane(plane), m_Fixed(fixed), m_Step(step), m_Vertical(vertical) {}

  int length() const { return ((m_Vertical ? m_Plane.height : m_Plane.width) + m_Step - 1) / m_Step; }
  std::int64_t at(int i) const {
    return m_Vertical ? m_Plane.at(m_Fixed, i * m_Step) : m_Plane.at(i * m_Step, m_Fixed);
  }
  void add(int i, std::int64_t change) {
    if (m_Vertical) {
      m_Plane.store(m_Fixed, i * m_Step, at(i) + change);
    } else {
      m_Plane.store(i * m_Step, m_Fixed, at(i) + change);
    }
  }

 private:
  NaivePlane& m_Plane;
  int m_Fixed;
  int m_Step;
  bool m_Vertical;
};

void invertLine(Line a) {
  const int n = a.length();
  if (n < 2) return;
  a.add(0, -std::int64_t{half(a.at(1))});
  if (n == 2) {
    a.add(1, a.at(0));
    return;
  }
  int p = 2;
  for (; p < n - 2; p += 2) {
    a.add(p, -std::int64_t{quarter(a.at(p - 1) + a.at(p + 1))});
    a.add(p - 1, half(a.at(p) + a.at(p - 2)));
  }
  if (p + 1 >= n) {
    a.add(p, -std::int64_t{half(a.at(p - 1))});
    a.add(p - 1, half(a.at(p) + a.at(p - 2)));
  } else {
    a.add(p, -std::int64_t{quarter(a.at(p - 1) + a.at(p + 1))});
    a.add(p - 1, half(a.at(p) + a.at(p - 2)));
    a.add(p + 1, a.at(p));
  }
}

}  // namespace

void invertLevels(NaivePlane& plane, int levels) {
  int doublings = 0;
  while ((1 << doublings) < std::max(plane.width, plane.height)) ++doublings;
  for (int level = std::min(levels, doublings) - 1; level >= 0; --level) {
    const int s = 1 << level;
    for (int x = 0; x < plane.width; x += s) invertLine(Line(plane, x, s, true));
    for (int y = 0; y < plane.height; y += s) invertLine(Line(plane, y, s, false));
  }
}

}  // namespace ei4::test
