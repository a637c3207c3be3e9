#include "driver/jpg_writer.h"

#include <magick/MagickCore.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <memory>

#include "driver/options.h"
#include "driver/paths.h"

namespace {

struct Destroy {
  void operator()(ImageInfo* info) const noexcept { DestroyImageInfo(info); }
  void operator()(Image* images) const noexcept { DestroyImageList(images); }
  void operator()(ExceptionInfo* exception) const noexcept { DestroyExceptionInfo(exception); }
};
using OwnedInfo = std::unique_ptr<ImageInfo, Destroy>;
using OwnedImage = std::unique_ptr<Image, Destroy>;
using OwnedException = std::unique_ptr<ExceptionInfo, Destroy>;

// Puts prefix and name into one of the library's name fields. A name is never cut: it would be another
// file's.
bool setName(char (&field)[MaxTextExtent], const char* prefix, const char* name) {
  if (name == nullptr) return false;
  const int length = std::snprintf(field, sizeof field, "%s%s", prefix, name);
  return length >= 0 && static_cast<std::size_t>(length) < sizeof field;
}

OwnedInfo imageInfo(CSize size, COLOR_TYPE colorType) {
  OwnedInfo info(AcquireImageInfo());
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%ldx%ld", size.cx, size.cy);
  CloneString(&info->size, text.data());
  info->interlace = NoInterlace;
  info->depth = static_cast<std::size_t>(Color2BitsUsed(colorType));
  return info;
}

// What ConstituteImage does, but with an answer where that ends the process: for a side of 0 and for pictures
// beyond the limits that the machine's administrator has set. It also leaves out clearing pixels that are all
// overwritten.
OwnedImage constitute(CSize size, const char* map, const void* pixels) {
  if (size.cx < 1 || size.cy < 1) return nullptr;
  OwnedImage image(AcquireImage(nullptr));
  if (!image) return nullptr;
  const auto columns = static_cast<std::size_t>(size.cx);
  const auto rows = static_cast<std::size_t>(size.cy);
  image->depth = 8;
  if (std::strcmp(map, "I") == 0) image->colorspace = GRAYColorspace;
  if (columns > GetMagickResourceLimit(WidthResource) || rows > GetMagickResourceLimit(HeightResource) ||
      SetImageExtent(image.get(), columns, rows) == MagickFalse ||
      ImportImagePixels(image.get(), 0, 0, columns, rows, map, CharPixel, pixels) == MagickFalse) {
    return nullptr;
  }
  return image;
}

// The result of the writing is not asked for: see the quirk at the callers.
void writeJpg(ImageInfo& info, Image& image, unsigned int quality) {
  info.quality = quality;
  image.quality = quality;  // the only one that the library's JPEG writer looks at
  WriteImage(&info, &image);
}

}  // namespace

// Quirk jpg-write-unchecked: the result says that there was a picture. When the file cannot be written the
// run still succeeds.
int jpgCompress(const CDicomImage* image, const char* path, unsigned int quality) {
  const COLOR_TYPE colorType = image->GetColorType();
  if (IsJpg(path) == 0 || Color2BitsUsed(colorType) != 8) return 0;

  const OwnedInfo info = imageInfo(image->m_Size, colorType);
  const OwnedImage picture =
      constitute(image->m_Size, colorType == COLOR_TYPE_C08 ? "RGB" : "I", image->m_pBuffer);
  if (!picture || !setName(picture->filename, "", path)) return 0;
  writeJpg(*info, *picture, quality);
  return 1;
}

// Quirk jpg-write-unchecked: here as well.
int jpgCompressFile(const char* rawPath, COLOR_TYPE colorType, CSize size, const char* path,
                    unsigned int quality) {
  if (IsJpg(path) == 0 || size.cx < 1 || size.cy < 1) return 0;

  const OwnedInfo info = imageInfo(size, colorType);
  info->number_scenes = 1;  // a file that holds several pictures gives its first one
  if (!setName(info->filename, colorType == COLOR_TYPE_C08 ? "RGB:" : "GRAY:", rawPath)) return 0;
  const OwnedException exception(AcquireExceptionInfo());
  const OwnedImage picture(ReadImage(info.get(), exception.get()));
  if (!picture || !setName(picture->filename, "", path)) return 0;
  writeJpg(*info, *picture, quality);
  return 1;
}
