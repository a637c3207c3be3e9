// The least that a JPEG costs: starts MagickCore, has it write one picture in the plain manner, stops it.
// jpeg_only OUT.jpg WIDTH HEIGHT [PIXELS.raw I|RGB]: the picture is the file's 8-bit samples, else a smooth grey one.
#include <magick/MagickCore.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <vector>

namespace {

constexpr std::size_t kQuality = 90;

std::vector<unsigned char> smoothPicture(std::size_t width, std::size_t height) {
  std::vector<unsigned char> samples(width * height);
  for (std::size_t i = 0; i < samples.size(); ++i)
    samples[i] = static_cast<unsigned char>((i % width + i / width) / 2);
  return samples;
}

bool writeJpeg(const char* path, std::size_t width, std::size_t height, const char* map,
               const void* samples) {
  ExceptionInfo* exception = AcquireExceptionInfo();
  ImageInfo* info = AcquireImageInfo();
  Image* image = ConstituteImage(width, height, map, CharPixel, samples, exception);
  bool written = false;
  if (image != nullptr && std::strlen(path) < sizeof image->filename) {
    std::strcpy(image->filename, path);
    image->quality = kQuality;
    written = WriteImage(info, image) != MagickFalse;
  }
  if (image != nullptr) DestroyImage(image);
  DestroyImageInfo(info);
  DestroyExceptionInfo(exception);
  return written;
}

}  // namespace

int main(int argc, char** argv) {
  const unsigned long width = argc > 3 ? std::strtoul(argv[2], nullptr, 10) : 0;
  const unsigned long height = argc > 3 ? std::strtoul(argv[3], nullptr, 10) : 0;
  if ((argc != 4 && argc != 6) || width < 1 || height < 1) {
    std::fprintf(stderr, "usage: jpeg_only OUT.jpg WIDTH HEIGHT [PIXELS.raw I|RGB]\n");
    return 2;
  }
  MagickCoreGenesis(argv[0], MagickTrue);
  SetMagickResourceLimit(ThreadResource, 1);
  const char* map = argc == 6 ? argv[5] : "I";
  std::vector<unsigned char> samples;
  if (argc == 6) {
    samples.resize(width * height * std::strlen(map));
    std::ifstream file(argv[4], std::ios::binary);
    if (!file.read(reinterpret_cast<char*>(samples.data()), static_cast<std::streamsize>(samples.size())))
      return 1;
  } else {
    samples = smoothPicture(width, height);
  }
  const bool written = writeJpeg(argv[1], width, height, map, samples.data());
  MagickCoreTerminus();
  return written ? 0 : 1;
}
