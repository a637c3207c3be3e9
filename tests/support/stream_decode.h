// One call for a whole decode with the real decoder, on memory of exactly the right size.
#pragma once

#include <span>
#include <vector>

#include "gwav4/decompressor.h"

namespace ei4::test {

struct DecodedPicture {
  int status = 0;
  int width = 0;
  int height = 0;
  int bytesPerPixel = 0;
  std::vector<unsigned char> pixels;  ///< kUntouched everywhere unless the decoder wrote

  static constexpr unsigned char kUntouched = 0xA5;

  /// Pixel `index` of a 16-bit picture.
  int pixel16(std::size_t index) const { return pixels.at(2 * index) | pixels.at(2 * index + 1) << 8; }
};

/// stream  at least a header.
/// factor  halvings of both sides. level: as the last argument of decompress.
inline DecodedPicture decodeStream(std::span<const unsigned char> stream, int factor = 0, int level = 0) {
  const std::vector<unsigned char> exact(stream.begin(), stream.end());  // so that a sanitizer sees its end
  zel::gwav4::CGWavDecompressor decompressor(exact.data(), exact.size() - zel::gwav4::kHeaderBytes, factor,
                                             0);
  DecodedPicture picture;
  picture.width = decompressor.getXSize();
  picture.height = decompressor.getYSize();
  picture.bytesPerPixel = decompressor.getBytesPerPixel();
  picture.pixels.assign(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) *
                            static_cast<std::size_t>(picture.bytesPerPixel),
                        DecodedPicture::kUntouched);
  picture.status = decompressor.decompress(picture.pixels.data(), picture.pixels.size(), level);
  return picture;
}

}  // namespace ei4::test
