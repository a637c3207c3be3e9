#include "driver/magick_image.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstring>

namespace ei4 {

bool setName(NameField& field, const char* prefix, const char* path) {
  if (path == nullptr) return false;
  const char* here = *path == '|' ? "./" : "";  // alone, a command for a library built with pipes
  const int length = std::snprintf(field, sizeof field, "%s%s%s", prefix, here, path);
  return length >= 0 && static_cast<std::size_t>(length) < sizeof field;
}

bool withinSideLimits(CSize size) {
  return size.cx >= 1 && static_cast<MagickSizeType>(size.cx) <= GetMagickResourceLimit(WidthResource) &&
         size.cy >= 1 && static_cast<MagickSizeType>(size.cy) <= GetMagickResourceLimit(HeightResource);
}

OwnedInfo makeImageInfo(CSize size, int depth) {
  OwnedInfo info(AcquireImageInfo());
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%ldx%ld", size.cx, size.cy);
  CloneString(&info->size, text.data());
  info->interlace = NoInterlace;
  info->depth = static_cast<std::size_t>(depth);
  return info;
}

// ConstituteImage goes on with an image that it has freed when a side is 0 or a limit of the machine's
// administrator is passed. This also leaves out clearing pixels that are all overwritten.
OwnedImage constitute(CSize size, const char* map, const void* pixels) {
  if (!withinSideLimits(size)) return nullptr;
  OwnedImage image(AcquireImage(nullptr));
  if (!image) return nullptr;
  const auto columns = static_cast<std::size_t>(size.cx);
  const auto rows = static_cast<std::size_t>(size.cy);
  image->depth = 8;
  if (std::strcmp(map, "I") == 0) image->colorspace = GRAYColorspace;
  if (SetImageExtent(image.get(), columns, rows) == MagickFalse ||
      ImportImagePixels(image.get(), 0, 0, columns, rows, map, CharPixel, pixels) == MagickFalse) {
    return nullptr;
  }
  return image;
}

void setQuality(ImageInfo& info, Image& image, unsigned int quality) {
  info.quality = quality;
  image.quality = quality;
}

}  // namespace ei4
