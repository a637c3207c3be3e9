// How small the converter can decode an image, and how much of it that takes.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace ei4::info {

/// The wanted widths (-geom) of one stretch, and what all of them lead to.
struct ReadSize {
  int factor = 0;  ///< halvings of both sides
  int width = 0;   ///< pixels, after halving
  int height = 0;
  int wantedFrom = 0;                      ///< smallest -geom width
  std::optional<int> wantedTo;             ///< largest one; nothing: any larger one too, and no -geom at all
  std::optional<std::int64_t> readBudget;  ///< bytes of the stream that will do; nothing: all of it
  std::int64_t bytesRead = 0;              ///< by the converter, preamble included
  bool mayClaim = false;                   ///< whether an input of this length may claim so many pixels
};

/// From full size down. One stretch more where the widths of thumbnails, which read twice as much, begin within one.
/// header          the first 16 bytes of the stream, of a known magic.
/// length          bytes of the whole input.
/// preambleLength  bytes of it in front of the header.
std::vector<ReadSize> readSizes(std::span<const unsigned char> header, std::int64_t length,
                                int preambleLength);

}  // namespace ei4::info
