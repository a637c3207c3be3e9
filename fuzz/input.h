// A fuzzer's input, taken apart from its front: first numbers of fixed widths, then what they are about.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace ei4::fuzz {

/// Numbers are little-endian; those behind the input's end are zero.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : m_rest(data, size) {}

  std::uint8_t u8() { return static_cast<std::uint8_t>(take(1)); }
  int i8() {
    const int byte = u8();
    return byte < 128 ? byte : byte - 256;
  }
  std::uint16_t u16() { return static_cast<std::uint16_t>(take(2)); }
  std::int16_t i16() { return static_cast<std::int16_t>(take(2)); }
  std::uint32_t u32() { return static_cast<std::uint32_t>(take(4)); }
  std::int32_t i32() { return static_cast<std::int32_t>(take(4)); }
  std::int64_t i64() { return static_cast<std::int64_t>(take(8)); }
  double f64() { return std::bit_cast<double>(take(8)); }

  /// All that has not been taken. Its end is the end of an allocation, so that a sanitizer sees a read behind it.
  std::span<const std::uint8_t> rest() const { return m_rest; }
  std::string text() const { return {m_rest.begin(), m_rest.end()}; }

 private:
  std::uint64_t take(std::size_t bytes) {
    std::uint64_t value = 0;
    const std::size_t there = std::min(bytes, m_rest.size());
    for (std::size_t i = 0; i < there; ++i) value |= std::uint64_t{m_rest[i]} << (8 * i);
    m_rest = m_rest.subspan(there);
    return value;
  }

  std::span<const std::uint8_t> m_rest;
};

}  // namespace ei4::fuzz
