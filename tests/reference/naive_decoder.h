// A second decoder of GW40/GW41 streams, written for reading and not for speed: one bit and one coefficient
// at a time, whole passes, no shared code with src/gwav4. Tests compare the real decoder with it.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace ei4::test {

struct NaiveResult {
  int status = 0;  ///< what CGWavDecompressor::decompress answers for a buffer of exactly the right size
  int width = 0;   ///< of the reduced picture
  int height = 0;  ///< of the reduced picture
  int bytesPerPixel = 0;  ///< as in the stream header
  std::vector<std::uint8_t>
      pixels;  ///< packed rows, 16-bit pixels little-endian; empty unless status is 0 or 4
};

/// Decodes `stream`, the 16-byte header and the coded data, at reduction `factor`.
/// chunkLimit  as the last argument of CGWavDecompressor::decompress: 0 no limit, n > 0 stops the directory
/// after n
///             chunks, n < 0 stops the coefficients after row -n of the first plane.
/// Fewer than 16 bytes answer 128. Never reads outside `stream`; time and memory grow with the size in the
/// header, so the caller bounds that size.
NaiveResult decodeNaively(std::span<const std::uint8_t> stream, int factor, int chunkLimit = 0);

}  // namespace ei4::test
