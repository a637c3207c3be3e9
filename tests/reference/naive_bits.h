// Coded bits as a plain index into the bytes: bit n is bit n % 8 of byte n / 8.
#pragma once

#include <cstdint>
#include <span>

namespace ei4::test {

struct EndOfData {};  ///< thrown by NaiveBits::take

class NaiveBits {
 public:
  NaiveBits() = default;  ///< a reader that stands nowhere: it has no bit to give
  explicit NaiveBits(std::span<const std::uint8_t> bytes) : m_Bytes(bytes) {}

  /// The next bit. Throws EndOfData behind the last one.
  int take() {
    if (atEnd()) throw EndOfData{};
    const int byte = m_Bytes[static_cast<std::size_t>(m_Position / 8)];
    const int bit = (byte >> (m_Position % 8)) & 1;
    ++m_Position;
    return bit;
  }

  /// The next bit, or 0 behind the last one.
  int takeOrZero() { return atEnd() ? 0 : take(); }

  /// A number of `count` bits, the lowest one first; no bits at all, and 0, when `count` is 0 or negative.
  std::uint64_t takeNumber(int count) {
    std::uint64_t number = 0;
    for (int i = 0; i < count; ++i) number |= std::uint64_t(static_cast<unsigned>(take())) << i;
    return number;
  }

  /// Passes over `count` bits. Throws EndOfData when there are fewer.
  void skip(std::uint64_t count) {
    const std::uint64_t left = std::uint64_t{m_Bytes.size()} * 8 - m_Position;
    if (count > left) throw EndOfData{};
    m_Position += count;
  }

 private:
  bool atEnd() const { return m_Position / 8 >= m_Bytes.size(); }

  std::span<const std::uint8_t> m_Bytes;
  std::uint64_t m_Position = 0;
};

}  // namespace ei4::test
