#include "encoder/forward_transform.h"

#include <algorithm>
#include <cstddef>

namespace ei4::tools {

namespace {

// One line of n grid samples, seen so that both directions share the lifting below: `at(i)` is the i-th grid
// sample of the line when rows are lifted, and a whole grid row of samples when columns are lifted.
// Neighbours beyond an end are mirrored: position -1 is 1, position n is n - 2.
int mirrored(int i, int n) {
  if (i < 0) return -i;
  return i < n ? i : 2 * (n - 1) - i;
}

template <typename Sample>
Sample stored(std::int32_t value) {
  return static_cast<Sample>(value);  // 16-bit samples wrap here, as they do in the decoder
}

template <typename Sample>
void liftRow(Sample* row, int n, std::ptrdiff_t step) {
  const auto at = [&](int i) -> Sample& { return row[mirrored(i, n) * step]; };
  for (int i = 1; i < n; i += 2) at(i) = stored<Sample>(at(i) - roundedHalf(at(i - 1) + at(i + 1)));
  for (int i = 0; i < n; i += 2) at(i) = stored<Sample>(at(i) + roundedQuarter(at(i - 1) + at(i + 1)));
}

template <typename Sample, typename Step>
void liftGridRow(Sample* target, const Sample* above, const Sample* below, int width, int step, Step lift) {
  for (int x = 0; x < width; x += step) target[x] = stored<Sample>(lift(target[x], above[x] + below[x]));
}

template <typename Sample>
void liftColumns(Sample* samples, int width, int n, int step) {
  const std::ptrdiff_t gridRow = static_cast<std::ptrdiff_t>(width) * step;
  const auto at = [&](int i) { return samples + mirrored(i, n) * gridRow; };
  for (int i = 1; i < n; i += 2) {
    liftGridRow(at(i), at(i - 1), at(i + 1), width, step,
                [](std::int32_t value, std::int32_t sum) { return value - roundedHalf(sum); });
  }
  for (int i = 0; i < n; i += 2) {
    liftGridRow(at(i), at(i - 1), at(i + 1), width, step,
                [](std::int32_t value, std::int32_t sum) { return value + roundedQuarter(sum); });
  }
}

int gridCount(int size, int step) { return (size + step - 1) / step; }

}  // namespace

int usefulLevels(int width, int height) {
  int levels = 0;
  while ((1 << levels) < std::max(width, height)) ++levels;
  return levels;
}

template <typename Sample>
void forwardTransform(Sample* samples, int width, int height, int levels) {
  const int count = std::min(levels, usefulLevels(width, height));
  for (int level = 0; level < count; ++level) {
    const int step = 1 << level;
    const int columns = gridCount(width, step);
    const int rows = gridCount(height, step);
    if (columns > 1) {
      for (int y = 0; y < height; y += step) {
        liftRow(samples + static_cast<std::ptrdiff_t>(y) * width, columns, step);
      }
    }
    if (rows > 1) liftColumns(samples, width, rows, step);
  }
}

template void forwardTransform(std::int16_t*, int, int, int);
template void forwardTransform(std::int32_t*, int, int, int);

}  // namespace ei4::tools
