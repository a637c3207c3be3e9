#include "ei4make/rle_header.h"

#include <cstddef>
#include <cstdint>

namespace ei4::tools {

namespace {

constexpr std::size_t kHeaderBytes = 64;
constexpr int kMostSegments = 15;

std::uint32_t numberAt(std::span<const unsigned char> bytes, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i > 0; --i) value = value << 8 | bytes[at + i - 1];
  return value;
}

}  // namespace

bool hasRleHeader(std::span<const unsigned char> frame, int segments) {
  if (frame.size() < kHeaderBytes || segments < 1 || segments > kMostSegments) return false;
  if (numberAt(frame, 0) != static_cast<std::uint32_t>(segments)) return false;
  std::size_t last = 0;
  for (std::size_t i = 1; i <= static_cast<std::size_t>(segments); ++i) {
    const std::size_t begin = numberAt(frame, 4 * i);
    if (begin < kHeaderBytes || begin <= last || begin >= frame.size()) return false;
    last = begin;
  }
  return true;
}

}  // namespace ei4::tools
