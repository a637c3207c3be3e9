#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace ei4::tools {

/// Collects bits in the order in which the decoder takes them: each byte from its least significant bit up.
class BitWriter {
 public:
  /// Appends the low `count` bits of `value`, lowest first; count 0..64, higher bits of `value` are ignored.
  void put(std::uint64_t value, int count);

  /// Appends `count` zero bits.
  void putZeros(std::uint64_t count);

  /// Appends everything that `other` holds, at any bit offset.
  void append(const BitWriter& other);

  [[nodiscard]] std::uint64_t bitCount() const { return bitCount_; }

  /// The bits as bytes; the last byte is filled up with zero bits.
  [[nodiscard]] std::vector<unsigned char> bytes() const;

 private:
  std::vector<std::uint64_t> words_;  // bits above bitCount_ are zero
  std::uint64_t bitCount_ = 0;
};

/// Bits spelled out in writing order, blanks ignored: bitsFrom("01 1 1"). Throws EncodeError on other
/// characters.
BitWriter bitsFrom(std::string_view text);

}  // namespace ei4::tools
