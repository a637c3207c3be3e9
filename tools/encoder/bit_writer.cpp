#include "encoder/bit_writer.h"

#include <string>

#include "encoder/encode_error.h"

namespace ei4::tools {

void BitWriter::put(std::uint64_t value, int count) {
  if (count == 0) return;
  if (count < 64) value &= (std::uint64_t{1} << count) - 1;
  const int offset = static_cast<int>(bitCount_ % 64);
  if (offset == 0) {
    words_.push_back(value);
  } else {
    words_.back() |= value << offset;
    if (offset + count > 64) words_.push_back(value >> (64 - offset));
  }
  bitCount_ += static_cast<std::uint64_t>(count);
}

void BitWriter::putZeros(std::uint64_t count) {
  for (; count > 64; count -= 64) put(0, 64);
  put(0, static_cast<int>(count));
}

void BitWriter::append(const BitWriter& other) {
  std::uint64_t left = other.bitCount_;
  const std::size_t words = other.words_.size();  // kept: `other` may be this very writer
  for (std::size_t i = 0; i < words; ++i) {
    const int count = left < 64 ? static_cast<int>(left) : 64;
    put(other.words_[i], count);
    left -= static_cast<std::uint64_t>(count);
  }
}

std::vector<unsigned char> BitWriter::bytes() const {
  std::vector<unsigned char> result((bitCount_ + 7) / 8);
  for (std::size_t i = 0; i < result.size(); ++i) {
    result[i] = static_cast<unsigned char>(words_[i / 8] >> (8 * (i % 8)));
  }
  return result;
}

BitWriter bitsFrom(std::string_view text) {
  BitWriter bits;
  for (const char c : text) {
    if (c == ' ') continue;
    if (c != '0' && c != '1') throw EncodeError("bits are written with 0 and 1, not " + std::string(1, c));
    bits.put(c == '1' ? 1 : 0, 1);
  }
  return bits;
}

}  // namespace ei4::tools
