#pragma once

#include <cstdint>
#include <vector>

#include "encoder/bit_writer.h"
#include "encoder/stream_format.h"

namespace ei4::tools {

/// Writes a stream piece by piece, in the order of the calls: header (by the constructor), preamble, chunks,
/// end code. It keeps the format's shapes but not its rules: a test may leave pieces out, repeat them, name
/// planes that are not there, or state a length that is not the payload's.
class StreamBuilder {
 public:
  /// The reserved header bytes are zero. Sizes must lie in 0..kMostSide, the byte fields in 0..255.
  explicit StreamBuilder(const StreamHeader& header);

  /// top: the highest bit position, -1 for a picture without any; levels: the decomposition levels. Both 8
  /// bits.
  void preamble(int top, int levels);

  /// One chunk of the next lower bit position of `id`. Throws ChunkTooLong when its field cannot say its
  /// length.
  void chunk(const ChunkId& id, const BitWriter& payload);

  /// The same with a stated length of its own, of which as many low bits are written as the field has.
  void chunkStating(std::uint64_t lengthInBits, const ChunkId& id, const BitWriter& payload);

  /// Any bits, for what has no shape here.
  void raw(const BitWriter& bits) { coded_.append(bits); }

  /// Ends the directory.
  void end() { coded_.put(3, 2); }

  [[nodiscard]] bool fits(const ChunkId& id, std::uint64_t lengthInBits) const;

  /// Bits of coded data so far, the header not counted.
  [[nodiscard]] std::uint64_t codedBits() const { return coded_.bitCount(); }

  /// Header and coded data; the last byte is filled up with zero bits.
  [[nodiscard]] std::vector<unsigned char> build() const;

 private:
  StreamHeader header_;
  BitWriter coded_;
};

}  // namespace ei4::tools
