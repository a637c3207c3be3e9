// The entries of a stream's directory: one in front of each chunk.
#pragma once

#include <bit>
#include <cstdint>

#include "gwav4/bit_reader.h"

namespace zel::gwav4 {

inline constexpr int kEndOfDirectory = 3;   ///< plane code
inline constexpr int kNoTopPosition = 255;  ///< the field of a stream whose coefficients are all 0

/// What stands in front of a chunk, judged by nobody.
struct DirectoryEntry {
  int plane = 0;             ///< 0 to 3; kEndOfDirectory: there is no chunk, and the other fields are 0
  int order = 0;             ///< 0 to 15; 0 is the finest level
  bool refinement = false;   ///< else a significance chunk
  std::uint64_t length = 0;  ///< bits of the chunk that follows
};

/// Width of the length fields of order 0 in a stream of this full size; exact for every size. Sides: 0 to 65535.
inline int lengthFieldWidth(int fullX, int fullY, bool gw40) {
  std::uint64_t samples = static_cast<std::uint64_t>(fullX) * static_cast<std::uint64_t>(fullY);
  if (!gw40) samples += samples / 2;
  return static_cast<int>(std::bit_width(2 * samples + 1)) - 1;
}

/// Takes the next entry; its chunk begins where the reader then stands. Throws kEndOfData.
/// lengthBits  as lengthFieldWidth has it.
inline DirectoryEntry takeDirectoryEntry(CBitReader& reader, int lengthBits, bool gw40) {
  // A width of 0 or less takes no bits.
  const auto field = [&reader](int width) { return reader.takeBits(width); };
  DirectoryEntry entry;
  entry.plane = static_cast<int>(field(2));
  if (entry.plane == kEndOfDirectory) return entry;
  entry.order = static_cast<int>(field(4));
  entry.refinement = field(1) != 0;
  const int shorter = entry.refinement && !gw40 ? 1 : 0;
  entry.length = field(lengthBits - 2 * entry.order + 1 - shorter);
  return entry;
}

}  // namespace zel::gwav4
