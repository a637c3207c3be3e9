// The 16 bytes in front of every coded image, and how small to decode it.
#pragma once

#include <array>
#include <cstdint>

namespace zel::gwav4 {

inline constexpr unsigned long kHeaderBytes = 16;

/// The stream header. On the wire all fields are little-endian and follow one another without padding.
struct GWHeader {
  std::array<char, 4> magic{};     ///< "GW40" or "GW41"
  std::uint8_t bytesPerPixel = 0;  ///< 1: 8-bit grey, 2: 16-bit grey, 3: colour, three 8-bit components
  std::uint8_t bitsPerPixel = 0;   ///< significant bits of one sample
  std::uint16_t xSize = 0;         ///< width, pixels
  std::uint16_t ySize = 0;         ///< height, pixels
  std::array<std::uint8_t, 6> reserved{};  ///< carried along, not interpreted
};

/// Reads the fields of the 16 bytes at `bytes`; judges none of them.
GWHeader parseHeader(const unsigned char* bytes);

/// The two versions of the format. They share header and coded data and differ in the width of the length
/// fields.
enum class Version { unknown, gw40, gw41 };
Version versionOf(const GWHeader& header);

/// The header as the decompressor holds it: width and height may be replaced by the decoded (level-reduced)
/// ones.
class CGWavHeader : private GWHeader {
 public:
  explicit CGWavHeader(const unsigned char* bytes) : GWHeader(parseHeader(bytes)) {}

  Version version() const { return versionOf(*this); }
  int headerBytesPerPixel() const { return bytesPerPixel; }
  int headerBitsPerPixel() const { return bitsPerPixel; }
  int headerWidth() const { return xSize; }
  int headerHeight() const { return ySize; }

 protected:
  void replaceSize(int width, int height) {
    xSize = static_cast<std::uint16_t>(width);
    ySize = static_cast<std::uint16_t>(height);
  }
};

/// How a reduction by `factor` halvings is shared between the wavelet and the output conversion.
struct LevelChoice {
  int levels;       ///< levels that a picture of this size is worth, 0 to 8
  int skipLevels;   ///< finest levels left undecoded, 0 to 4
  int outputShift;  ///< halvings left to the output conversion; skipLevels + outputShift = factor
  int xSize;        ///< decoded width, pixels: the stream's, halved skipLevels times, rounded up
  int ySize;        ///< decoded height
};

/// width, height: of the stream, 0 to 65535. factor: a negative one counts as 0.
LevelChoice chooseLevels(int width, int height, int factor);

/// `size` halved `halvings` times, each time rounded up. Any count from 0 on.
int halveUp(int size, int halvings);

/// Finds how often to halve an image that should come down to about `wantedSize` pixels a side (0: full
/// size).
///
/// readBudget  out, bytes: a prefix of the stream long enough for that size; -1 for all of it. May be null.
/// factor      out, halvings of both sides. Never null; 0 after a refusal too.
/// header, headerLength  the first bytes of the stream, at least 16.
/// xSize/ySize out, pixels after halving. May be null only when wantedSize is 0.
/// byteSize    out, bytes, a 32-bit signed product that may wrap: never the sole ground for an allocation.
///             May be null.
/// bytesPerPixel, bitsPerPixel  out, the header's fields as they stand, judged by nobody. May be null.
///
/// Returns 1; 0 for fewer than 16 bytes or a foreign magic: then only factor is set, and readBudget if
/// wantedSize is 0. Touches header[0..15] only, never throws or allocates.
int getBestFactor(int wantedSize, int* readBudget, int* factor, const unsigned char* header,
                  unsigned long headerLength, int* xSize, int* ySize, unsigned long* byteSize,
                  int* bytesPerPixel, int* bitsPerPixel);

}  // namespace zel::gwav4
