#pragma once

#include <cstdint>

namespace ei4::tools {

/// Half of v, a quarter of v, rounded to the nearest with halves going away from zero.
constexpr std::int32_t roundedHalf(std::int32_t v) { return (v - (v < 0 ? 1 : 0) + 1) >> 1; }
constexpr std::int32_t roundedQuarter(std::int32_t v) { return (v - (v < 0 ? 1 : 0) + 2) >> 2; }

/// How often 1 must be doubled to reach the longer side: more levels than that change nothing.
int usefulLevels(int width, int height);

/// Forward reversible 5/3 lifting of width x height samples, rows back to back, in place: at each level the
/// low-pass values stay on the even grid positions and the high-pass values on the odd ones. Runs from fine
/// to coarse, rows before columns, which is exactly what the decoder undoes from coarse to fine. Levels
/// beyond usefulLevels() are ignored. A line of one sample stays as it is. Sample is std::int16_t or
/// std::int32_t; each step stores its result in that width, as the decoder does, so that even values that
/// wrap come back exactly.
template <typename Sample>
void forwardTransform(Sample* samples, int width, int height, int levels);

}  // namespace ei4::tools
