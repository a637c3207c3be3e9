#pragma once

#include <span>
#include <stdexcept>
#include <vector>

namespace ei4::tools {

/// Uncompressed pixels, rows from the top without padding.
struct Picture {
  int width = 0;          ///< pixels, 1..65535
  int height = 0;         ///< pixels, 1..65535
  int bytesPerPixel = 1;  ///< 1 8-bit grey, 2 16-bit grey in host byte order, 3 colour as red, green, blue
  int bitsPerPixel = 8;   ///< no sample needs more
  std::vector<unsigned char> pixels;
};

/// The input is not a picture that can be taken; what() says why.
class PictureError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// True when the bytes begin as a binary PGM or PPM does.
bool looksLikePnm(std::span<const unsigned char> file);

/// Reads the first picture of a PGM ("P5", maxval up to 65535, 16-bit samples high byte first) or PPM ("P6",
/// maxval up to 255). The significant bits are those of maxval. Throws PictureError for anything else, for
/// data that end early and for samples above maxval. Hostile input costs no more memory than its own size.
Picture readPnm(std::span<const unsigned char> file);

/// Takes headerless pixels; their number must be exactly that of width x height. Throws PictureError.
Picture readRaw(std::span<const unsigned char> file, int width, int height, int bytesPerPixel);

/// States `bits` significant bits. Throws PictureError when a sample needs more, or the format has fewer.
void stateBits(Picture& picture, int bits);

}  // namespace ei4::tools
