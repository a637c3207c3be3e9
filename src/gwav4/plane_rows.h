// Rows of a plane, made from its coefficient streams one after the other: the planes themselves are never held.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "gwav4/coefficient_reader.h"

namespace zel::gwav4 {

/// What is to be made of a plane's coefficients. In the interleaved layout the samples of the level with step s stand at
/// the multiples of s; in each direction the even multiples are low-pass and the odd ones high-pass.
struct PlaneShape {
  int width;
  int height;
  int levels;     ///< to lift; with more levels than the plane has, levelsToInvert of it
  bool inverted;  ///< false: the rows hold the coefficients as they stand
};

/// Levels worth inverting: at most `levels`, no more than the doublings of 1 that reach the longer side.
int levelsToInvert(int levels, int width, int height);

template <class Lane>
class PlaneRows {
 public:
  /// orders    one for each level from the finest one on, then the coarsest order; they stay the caller's, as do
  ///           `scratch` and what `limit` names.
  PlaneRows(const LaneKernel<Lane>& kernel, std::vector<OrderCursors>& orders, const PlaneShape& shape,
            const ScanLimit& limit, BlockScratch& scratch);
  ~PlaneRows();
  PlaneRows(const PlaneRows&) = delete;
  PlaneRows& operator=(const PlaneRows&) = delete;

  /// Makes the next row and, where there is one, the row behind it: `width` samples each, with kRowSlack writable behind
  /// them. Returns how many rows it made; 0 at the end.
  int next(Lane* first, Lane* second);

  /// False once samples went beyond the limits of 16 bits: the rows are then not right.
  bool withinLimits() const { return exact; }

 private:
  class Level;

  bool exact = true;
  std::vector<std::unique_ptr<Level>> levels;  ///< the finest one first
  std::unique_ptr<CoefficientReader<Lane>> coarsest;
  int width;
  int height;
  int rowsMade = 0;
};

extern template class PlaneRows<std::int16_t>;
extern template class PlaneRows<std::int32_t>;

}  // namespace zel::gwav4
