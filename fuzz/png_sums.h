// The check sums of a PNG, which chance never sets right.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace ei4::fuzz {

/// The 32-bit cyclic redundancy check of these bytes, as a PNG's chunks have it.
inline std::uint32_t crc32Of(std::span<const std::uint8_t> bytes) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const std::uint8_t byte : bytes) {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
  }
  return ~crc;
}

/// Sets the sum behind each chunk that is whole. The bytes need not be a PNG.
inline void setPngSums(std::span<std::uint8_t> file) {
  constexpr std::size_t kMagic = 8, kHead = 8, kSum = 4;
  for (std::size_t at = kMagic; at + kHead + kSum <= file.size();) {
    std::uint32_t length = 0;
    for (std::size_t i = 0; i < 4; ++i) length = length << 8 | file[at + i];
    if (length > file.size() - at - kHead - kSum) return;
    const std::uint32_t sum = crc32Of(file.subspan(at + 4, 4 + std::size_t{length}));
    at += kHead + length;
    for (std::size_t i = 0; i < kSum; ++i) file[at++] = static_cast<std::uint8_t>(sum >> (24 - 8 * i));
  }
}

}  // namespace ei4::fuzz
