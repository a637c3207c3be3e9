#include "reference/naive_coefficients.h"

#include <algorithm>
#include <cassert>

namespace ei4::test {
namespace {

// In doubled values, so that the lowest bit can hold the sign.
std::int64_t weightOf(int position) { return std::int64_t{1} << (position + 1); }

std::int64_t rebuild(NaiveOrder& order, int top) {
  int position = top;
  NaiveCoder::Step step;
  for (; position > order.nextSignificance; --position) {
    step = order.coders[static_cast<std::size_t>(position)].step();
    if (step.significant) break;
  }
  if (!step.significant) return 0;

  std::int64_t value = weightOf(position) + (step.negative ? 1 : 0);
  int lastRefined = position;
  for (int lower = position - 1; lower > order.nextRefinement; --lower) {
    if (order.refinements[static_cast<std::size_t>(lower)].takeOrZero() == 1) value |= weightOf(lower);
    lastRefined = lower;
  }
  const std::int64_t unrefined = weightOf(lastRefined - 1);
  if (unrefined > 2) value |= unrefined / 2;
  const bool negative = (value & 1) != 0;
  return negative ? -(value >> 1) : value >> 1;
}

int orderOfRow(std::int64_t fullRow, int levels) {
  int order = 0;
  while (order < levels && fullRow % 2 == 0) {
    fullRow /= 2;
    ++order;
  }
  return order;
}

}  // namespace

bool scanPlane(NaiveDirectory& directory, int index, int skipLevels, std::int64_t lastRow,
               NaivePlane& plane) {
  assert(skipLevels >= 0);
  auto& orders = directory.orders[static_cast<std::size_t>(index)];
  for (int y = 0; y < plane.height; ++y) {
    const int rowOrder = orderOfRow(y * (std::int64_t{1} << skipLevels), directory.levels);
    for (int o = skipLevels; o <= rowOrder; ++o) {
      const int step = 1 << (o - skipLevels);
      const int first = o == rowOrder ? 0 : step;
      const int stride = o == rowOrder ? step : 2 * step;
      for (int x = first; x < plane.width; x += stride) {
        plane.store(x, y, rebuild(orders[static_cast<std::size_t>(o)], directory.top));
      }
    }
    if (y == lastRow) return false;
  }
  return true;
}

}  // namespace ei4::test
