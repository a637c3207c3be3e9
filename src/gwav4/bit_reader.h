// Bits from a block of memory: least significant bit first in each little-endian 64-bit word, words in
// address order, then a tail of 0 to 7 bytes.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>

#include "gwav4/bit_streamer.h"

namespace zel::gwav4 {

/// Little-endian 64-bit word at `bytes`, which need not be aligned.
inline std::uint64_t loadWord(const unsigned char* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, sizeof word);
  if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
  return word;
}

/// Reads a block once, front to back. It does not own the block, which must stay alive and unchanged.
class CBitReader : public CBitRawStreamer {
 public:
  CBitReader() = default;  ///< over an empty block
  CBitReader(const unsigned char* bytes, std::uint64_t byteCount);

  const char* getType() const override { return "buffer"; }
  int getMode() const override { return 'r'; }
  long getTotal() const override;
  long getStoredTotal() const override { return getTotal(); }
  /// Called when the block is exhausted: throws kEndOfData.
  virtual void fetch();
  /// Takes over the block and the position of `source`. The second argument is not used.
  virtual void create(const CBitReader* source, unsigned long unused);

  /// The next bit, 0 or 1.
  int takeBit() {
    const std::uint64_t rest = bitBuffer >> 1;
    if (rest == 0) return takeBitOfNextWord();
    const int bit = static_cast<int>(bitBuffer & 1);
    bitBuffer = rest;
    return bit;
  }

  /// The next `count` bits, 0 to 64, as an unsigned number; the first one is the least significant.
  std::uint64_t takeBits(int count);

  /// Passes over `count` bits without looking at them. Throws kEndOfData when the block ends before, in an infinite
  /// reader too.
  void skipBits(std::uint64_t count);

  /// The block and the position in it, for loops that look at many bits at once. `position` and `bitCount`
  /// count bits from `bytes`; position <= bitCount.
  struct Window {
    const unsigned char* bytes;
    std::uint64_t position;
    std::uint64_t bitCount;
  };
  Window window() const;
  /// Moves to bit `position` of the block, 0 to its bit count.
  void seek(std::uint64_t position);

 protected:
  const unsigned char* data = nullptr;  ///< first byte of the block
  std::uint64_t wordCount = 0;          ///< whole 8-byte words in the block
  std::uint32_t tailBytes = 0;          ///< bytes behind them, 0 to 7
  std::uint64_t cursor = 0;             ///< words loaded so far; the tail counts as one
  std::uint64_t bitBuffer = 1;          ///< unread bits of the current word and above them a sentinel bit

 private:
  int takeBitOfNextWord();
  std::uint64_t loadTail() const;
};

/// A reader that delivers zero bits for ever once its block is exhausted.
class CBitInfiniteReader : public CBitReader {
 public:
  /// Switches to the supply of zeros, or throws as CBitReader does when setInfinite(false) was called. From
  /// then on positions count from the start of that supply.
  void fetch() override;

  void setInfinite(bool on) { infinite = on; }
  /// "u streamer for plane P ord O bits B" once it is attached to a chunk, else empty.
  std::string name() const;
  void setId(const ChunkId& chunk) { id = chunk; }

 private:
  ChunkId id;
  bool infinite = true;
};

}  // namespace zel::gwav4
