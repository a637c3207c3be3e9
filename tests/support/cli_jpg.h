// What a JPEG file shows, by the library's own reader.
#pragma once

#include <string>
#include <vector>

namespace ei4::test {

struct Jpg {
  unsigned long width = 0;  ///< pixels; 0 when the file is no JPEG
  unsigned long height = 0;
  int components = 0;                 ///< 1 grey, 3 colour, as the file's frame header has it
  bool subsampled = false;            ///< the first component has more samples than the others
  std::vector<unsigned char> pixels;  ///< R, G, B each
};

Jpg decodeJpg(const std::string& path);

/// Starts MagickCore once for the life of the test program. decodeJpg does so by itself.
void startMagickCore();

}  // namespace ei4::test
