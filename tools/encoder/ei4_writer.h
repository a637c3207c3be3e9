#pragma once

#include <span>
#include <vector>

namespace ei4::tools {

inline constexpr int kShortestPreamble = 24;
inline constexpr int kLongestPreamble = 65535;

/// What stands in front of the stream in a .ei4 file.
struct Ei4Preamble {
  float intercept = 0;
  float slope = 1;
  float window = 256;  ///< width, in rescaled units
  float level = 128;   ///< centre, in rescaled units

  /// Bytes in front of the stream, kShortestPreamble..kLongestPreamble; what exceeds the fields is zeros. A
  /// decoder that reads plain files takes the shortest only; in a blob container longer ones are possible.
  int length = kShortestPreamble;
};

/// Window and level that show all values of `bits` significant bits under this slope and intercept.
void showFullRange(Ei4Preamble& preamble, int bits);

/// The bytes of a .ei4 file. Throws EncodeError when the length is out of range.
std::vector<unsigned char> writeEi4(const Ei4Preamble& preamble, std::span<const unsigned char> stream);

}  // namespace ei4::tools
