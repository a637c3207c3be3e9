#include "gwav4/inverse_transform.h"

#include <algorithm>
#include <vector>

namespace zel::gwav4 {
namespace {

/// One level of a plane: the rows and columns that are multiples of the step, counted 0, 1, 2, ...
template <class T>
class Level {
 public:
  Level(const PlaneView<T>& view, int levelStep, RowSink<T>* rowSink)
      : plane(view),
        step(static_cast<std::size_t>(levelStep)),
        columns((static_cast<std::size_t>(view.width) + step - 1) / step),
        rows((static_cast<std::size_t>(view.height) + step - 1) / step),
        sink(rowSink),
        scratch(2 * columns) {}

  /// Vertical lifting, each row finished horizontally as soon as no other row needs it any more.
  void invert() {
    if (rows == 0) return;
    if (rows == 1) {
      finishRow(0);
      return;
    }
    Filter::lowerEvenAtEnd(row(0), row(1), columns, step);
    std::size_t even = 2;
    for (; even + 1 < rows; even += 2) {
      Filter::lowerEven(row(even), row(even - 1), row(even + 1), columns, step);
      raiseBetween(even);
    }
    if (even < rows) {  // the last row is an even one
      Filter::lowerEvenAtEnd(row(even), row(even - 1), columns, step);
      raiseBetween(even);
      finishRow(even);
    } else {
      Filter::raiseOddAtEnd(row(even - 1), row(even - 2), columns, step);
      finishRow(even - 2);
      finishRow(even - 1);
    }
  }

 private:
  using Filter = CFilter5_3<T>;

  T* row(std::size_t index) { return plane.samples + index * step * plane.stride; }

  void raiseBetween(std::size_t even) {
    Filter::raiseOdd(row(even - 1), row(even - 2), row(even), columns, step);
    finishRow(even - 2);
    finishRow(even - 1);
  }

  void finishRow(std::size_t index) {
    if (sink == nullptr) {
      Filter::invertLine(row(index), columns, step, row(index), step, scratch.data());
    } else {
      T* const line = scratch.data() + columns;
      Filter::invertLine(row(index), columns, step, line, 1, scratch.data());
      sink->put(static_cast<int>(index), line);
    }
  }

  const PlaneView<T>& plane;
  std::size_t step;
  std::size_t columns;
  std::size_t rows;
  RowSink<T>* sink;
  std::vector<T> scratch;  ///< one line of low- and high-pass samples, and one finished line
};

}  // namespace

int levelsToInvert(int levels, int width, int height) {
  int doublings = 0;
  while ((1L << doublings) < std::max(width, height)) ++doublings;
  return std::min(levels, doublings);
}

template <class T>
void invertPlane(const PlaneView<T>& plane, int levels, RowSink<T>* sink) {
  for (int level = levels - 1; level > 0; --level) Level<T>(plane, 1 << level, nullptr).invert();
  if (levels > 0) {
    Level<T>(plane, 1, sink).invert();
  } else if (sink != nullptr) {
    for (int y = 0; y < plane.height; ++y)
      sink->put(y, plane.samples + static_cast<std::size_t>(y) * plane.stride);
  }
}

template void invertPlane(const PlaneView<short>& plane, int levels, RowSink<short>* sink);
template void invertPlane(const PlaneView<int>& plane, int levels, RowSink<int>* sink);

}  // namespace zel::gwav4
