// What a picture file of any format shows, by the library's own reader.
#pragma once

#include <magick/MagickCore.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/cli_jpg.h"

namespace ei4::test {

struct PictureFile {
  std::string format;                 ///< by its first bytes, such as "PNG"; empty when it is no picture
  unsigned long width = 0;            ///< pixels
  unsigned long height = 0;           ///< pixels
  bool alpha = false;                 ///< has an alpha channel
  std::vector<unsigned char> pixels;  ///< R, G, B each
};

inline PictureFile readPicture(const std::string& path) {
  startMagickCore();
  PictureFile picture;
  std::ifstream stream(path, std::ios::binary);
  const std::vector<unsigned char> file(std::istreambuf_iterator<char>(stream), {});
  if (file.empty()) return picture;

  ImageInfo* info = AcquireImageInfo();
  ExceptionInfo* exception = AcquireExceptionInfo();
  Image* image = BlobToImage(info, file.data(), file.size(), exception);
  if (image != nullptr) {
    picture.format = image->magick;
    picture.width = image->columns;
    picture.height = image->rows;
    picture.alpha = image->matte != MagickFalse;
    picture.pixels.resize(3 * picture.width * picture.height);
    ExportImagePixels(image, 0, 0, picture.width, picture.height, "RGB", CharPixel, picture.pixels.data(),
                      exception);
    DestroyImageList(image);
  }
  DestroyExceptionInfo(exception);
  DestroyImageInfo(info);
  return picture;
}

/// R, G and B of one pixel.
inline const unsigned char* pixelAt(const PictureFile& picture, unsigned long x, unsigned long y) {
  return &picture.pixels[3 * (y * picture.width + x)];
}

/// Grey samples as R, G, B each.
inline std::vector<unsigned char> inColour(const std::vector<unsigned char>& grey) {
  std::vector<unsigned char> colour;
  for (const unsigned char sample : grey) colour.insert(colour.end(), 3, sample);
  return colour;
}

}  // namespace ei4::test
