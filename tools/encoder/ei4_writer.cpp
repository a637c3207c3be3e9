#include "encoder/ei4_writer.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "encoder/encode_error.h"

namespace ei4::tools {

namespace {

constexpr std::size_t kLengthOffset = 6;
constexpr std::size_t kInterceptOffset = 8;
constexpr std::size_t kSlopeOffset = 12;
constexpr std::size_t kWindowOffset = 16;
constexpr std::size_t kLevelOffset = 20;

void storeLittleEndian(std::vector<unsigned char>& bytes, std::size_t offset, std::uint32_t value,
                       int count) {
  for (int i = 0; i < count; ++i) {
    bytes[offset + static_cast<std::size_t>(i)] = static_cast<unsigned char>(value >> (8 * i));
  }
}

void storeFloat(std::vector<unsigned char>& bytes, std::size_t offset, float value) {
  storeLittleEndian(bytes, offset, std::bit_cast<std::uint32_t>(value), 4);
}

}  // namespace

void showFullRange(Ei4Preamble& preamble, int bits) {
  const auto values = static_cast<float>(1U << bits);
  preamble.window = std::fabs(values * preamble.slope);
  preamble.level = values / 2 * preamble.slope + preamble.intercept;
}

std::vector<unsigned char> writeEi4(const Ei4Preamble& preamble, std::span<const unsigned char> stream) {
  if (preamble.length < kShortestPreamble || preamble.length > kLongestPreamble) {
    throw EncodeError("a preamble has 24 to 65535 bytes");
  }
  std::vector<unsigned char> file(static_cast<std::size_t>(preamble.length));
  storeLittleEndian(file, kLengthOffset, static_cast<std::uint32_t>(preamble.length), 2);
  storeFloat(file, kInterceptOffset, preamble.intercept);
  storeFloat(file, kSlopeOffset, preamble.slope);
  storeFloat(file, kWindowOffset, preamble.window);
  storeFloat(file, kLevelOffset, preamble.level);
  file.insert(file.end(), stream.begin(), stream.end());
  return file;
}

}  // namespace ei4::tools
