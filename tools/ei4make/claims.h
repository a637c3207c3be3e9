// How large a picture a compressed input may claim. A header of a few bytes can name gigabytes of pixels.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ei4::tools {

/// Pixels that any input may claim, however short it is. The converter sets itself the same limits.
inline constexpr std::uint64_t kPixelsForAnyInput = std::uint64_t{1} << 26;

/// Pixels beyond that take at least one byte of input for this many.
inline constexpr std::uint64_t kPixelsForEachByte = 256;

/// Whether an input of `bytes` may claim this picture; both sides are 0..65535.
constexpr bool mayClaim(int width, int height, std::size_t bytes) {
  const std::uint64_t pixels = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
  return pixels <= kPixelsForAnyInput || pixels / kPixelsForEachByte <= bytes;
}

}  // namespace ei4::tools
