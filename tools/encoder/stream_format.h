#pragma once

#include <cstdint>

namespace ei4::tools {

inline constexpr int kStreamHeaderBytes = 16;
inline constexpr int kMostLevels = 8;
inline constexpr int kMostSide = 65535;
inline constexpr int kHighestBit = 31;  ///< no decoder knows a higher bit position

/// The two stream versions. They differ in the width of the chunks' length fields only.
enum class Magic { GW40, GW41 };

enum class ChunkKind { Significance = 0, Refinement = 1 };

/// Names a series of chunks: each next chunk of the same id carries the next lower bit position.
struct ChunkId {
  int plane = 0;  ///< 0..2
  int order = 0;  ///< 0 is the finest decomposition level
  ChunkKind kind = ChunkKind::Significance;

  friend bool operator==(const ChunkId&, const ChunkId&) = default;
};

/// The 16 bytes in front of the coded data.
struct StreamHeader {
  Magic magic = Magic::GW41;
  int bytesPerPixel = 1;  ///< 1 8-bit grey, 2 16-bit grey, 3 colour
  int bitsPerPixel = 8;   ///< significant bits of a sample
  int width = 0;          ///< pixels, up to kMostSide
  int height = 0;
};

/// The number of decomposition levels that leaves at least 8 samples a side at the coarsest one, at most 8.
/// The decoder leaves out up to min(this, 4) levels for a reduced picture, and shows nothing when a stream
/// has fewer levels than it leaves out.
int naturalLevels(int width, int height);

/// Width in bits of a chunk's length field; 0 or less when no field is there and only empty chunks are
/// possible. It counts the pixels of the full picture, in exact integers.
int lengthFieldBits(const StreamHeader& header, const ChunkId& id);

/// True when the decoder keeps the coefficients of such a stream in 16 bits (and knows 16 bit positions, not
/// 32).
bool usesShortCoefficients(const StreamHeader& header);

}  // namespace ei4::tools
