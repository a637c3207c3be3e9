#pragma once

#include <cstddef>

#include "gwav4/filter5_3.h"

namespace zel::gwav4 {

/// One coefficient plane in the interleaved layout: the samples of the level with step s stand at the
/// multiples of s; in each direction the even multiples are low-pass and the odd ones high-pass.
template <class T>
struct PlaneView {
  T* samples;
  int width;
  int height;
  std::size_t stride;  ///< elements between rows
};

/// Where finished rows go; rows arrive in ascending order, each once.
template <class T>
class RowSink {
 public:
  virtual void put(int y, const T* row) = 0;

 protected:
  ~RowSink() = default;
};

/// Levels worth inverting: at most `levels`, no more than the doublings of 1 that reach the longer side.
int levelsToInvert(int levels, int width, int height);

/// Inverts `levels` levels, coarsest first, each vertically and then horizontally.
/// sink  null: the plane holds the samples afterwards. Else each finished row is put there and the plane's
///       contents are unspecified; with no level to invert the rows are put as they are.
template <class T>
void invertPlane(const PlaneView<T>& plane, int levels, RowSink<T>* sink);

extern template void invertPlane(const PlaneView<short>& plane, int levels, RowSink<short>* sink);
extern template void invertPlane(const PlaneView<int>& plane, int levels, RowSink<int>* sink);

}  // namespace zel::gwav4
