#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "encoder/stream_format.h"

namespace ei4::tools {

/// One wavelet coefficient as its chunks describe it: the magnitude above a sign bit (1 negative).
class Coefficient {
 public:
  constexpr explicit Coefficient(std::int32_t value)
      : word_((magnitudeOf(value) << 1) | (value < 0 ? 1U : 0U)) {}

  [[nodiscard]] constexpr std::uint32_t magnitude() const { return word_ >> 1; }
  [[nodiscard]] constexpr bool isNegative() const { return (word_ & 1U) != 0; }

 private:
  static constexpr std::uint32_t magnitudeOf(std::int32_t value) {
    return value < 0 ? ~static_cast<std::uint32_t>(value) + 1U : static_cast<std::uint32_t>(value);
  }
  std::uint32_t word_;
};

/// The coefficients of one plane: [order][i], each order in the sequence in which the decoder visits it.
using PlaneCoefficients = std::vector<std::vector<Coefficient>>;

/// Transforms a picture and sorts its coefficients: one plane for grey, three for colour, orders 0..levels.
/// pixels: width x height pixels without padding, 16-bit ones in host byte order. The sizes must agree.
std::vector<PlaneCoefficients> transformPicture(std::span<const unsigned char> pixels,
                                                const StreamHeader& header, int levels);

}  // namespace ei4::tools
