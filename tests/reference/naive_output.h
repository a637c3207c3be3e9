// Samples to pixels: colour, reducing mean, clamping, bytes.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "reference/naive_coefficients.h"

namespace ei4::test {

/// The pixels of `planes` (one, or three for colour), each the mean of a block of `step` x `step` samples.
/// bits  0 leaves the values as they are; otherwise they are clamped to [0, 2^bits - 1].
std::vector<std::uint8_t> convertSamples(std::span<const NaivePlane> planes, int bytesPerPixel, int bits,
                                         std::int64_t step);

}  // namespace ei4::test
