#include "support/cli_jpg.h"

#include <magick/MagickCore.h>

#include <cstring>
#include <fstream>
#include <iterator>

namespace ei4::test {

namespace {

// Finds the frame header: marker C0, C1 or C2, behind segments that each state their length.
void readFrame(const std::vector<unsigned char>& file, Jpg& jpg) {
  std::size_t at = 2;
  while (at + 11 < file.size() && file[at] == 0xFF) {
    const unsigned char marker = file[at + 1];
    if (marker >= 0xC0 && marker <= 0xC2) {
      jpg.components = file[at + 9];
      jpg.subsampled = file[at + 11] != 0x11;
      return;
    }
    at += 2 + (std::size_t{file[at + 2]} << 8 | file[at + 3]);
  }
}

}  // namespace

void startMagickCore() {
  struct MagickCore {
    MagickCore() {
      MagickCoreGenesis("", MagickFalse);
      SetMagickResourceLimit(ThreadResource, 1);
    }
    ~MagickCore() { MagickCoreTerminus(); }
  };
  static const MagickCore library;
}

Jpg decodeJpg(const std::string& path) {
  startMagickCore();
  Jpg jpg;
  std::ifstream stream(path, std::ios::binary);
  const std::vector<unsigned char> file(std::istreambuf_iterator<char>(stream), {});
  if (file.size() < 4 || file[0] != 0xFF || file[1] != 0xD8) return jpg;
  readFrame(file, jpg);

  ImageInfo* info = AcquireImageInfo();
  ExceptionInfo* exception = AcquireExceptionInfo();
  Image* image = BlobToImage(info, file.data(), file.size(), exception);
  if (image != nullptr) {
    jpg.width = image->columns;
    jpg.height = image->rows;
    jpg.pixels.resize(3 * jpg.width * jpg.height);
    ExportImagePixels(image, 0, 0, jpg.width, jpg.height, "RGB", CharPixel, jpg.pixels.data(), exception);
    DestroyImageList(image);
  }
  DestroyExceptionInfo(exception);
  DestroyImageInfo(info);
  return jpg;
}

}  // namespace ei4::test
