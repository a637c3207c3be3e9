#include "encoder/stream_format.h"

#include <algorithm>
#include <bit>

namespace ei4::tools {

int naturalLevels(int width, int height) {
  const auto eighth = static_cast<std::uint32_t>(std::min(width, height)) >> 3;
  return eighth == 0 ? 0 : std::min(kMostLevels, static_cast<int>(std::bit_width(eighth)) - 1);
}

int lengthFieldBits(const StreamHeader& header, const ChunkId& id) {
  std::uint64_t pixels = static_cast<std::uint64_t>(header.width) * static_cast<std::uint64_t>(header.height);
  if (header.magic == Magic::GW41) pixels += pixels / 2;
  const int planeBits = static_cast<int>(std::bit_width(2 * pixels + 1)) - 1;
  const bool shorter = header.magic == Magic::GW41 && id.kind == ChunkKind::Refinement;
  return planeBits - 2 * id.order + (shorter ? 0 : 1);
}

bool usesShortCoefficients(const StreamHeader& header) {
  return header.bytesPerPixel != 2 || header.bitsPerPixel <= 11;
}

}  // namespace ei4::tools
