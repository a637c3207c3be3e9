#include "driver/jpg_writer.h"

#include <magick/MagickCore.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

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

using NameField = char[MaxTextExtent];

// Both setters answer false for a name that is too long. It is never cut: it would be another file's.

bool setInputName(NameField& field, const char* format, const char* path) {
  if (path == nullptr) return false;
  const int length = std::snprintf(field, sizeof field, "%s%s", format, path);
  return length >= 0 && static_cast<std::size_t>(length) < sizeof field;
}

// Words the path so that the library writes a JPEG into the file of exactly this name. Left alone, it would
// take "png:x.jpg" for a format and a name, ".jpg" for a name without an extension, "|x.jpg" and "fd:1.jpg"
// for places to write to, and "%d" for the picture's number.
bool setOutputName(NameField& field, const char* path) {
  std::string name = *path == '/' ? "jpg:" : "jpg:./";
  for (const char* c = path; *c != '\0'; ++c) {
    name += *c;
    if (*c == '%') name += '%';
  }
  if (name.size() >= sizeof field) return false;
  std::memcpy(field, name.c_str(), name.size() + 1);
  return true;
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

// What ConstituteImage does, but with an answer where that ends the process: for a side of 0 and for
// pictures beyond the limits that the machine's administrator has set. It also leaves out clearing pixels
// that are all overwritten.
OwnedImage constitute(CSize size, const char* map, const void* pixels) {
  if (!JpgTakes(size)) return nullptr;
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

// The result of the writing is not asked for: see the quirk at the callers.
void writeJpg(ImageInfo& info, Image& image, unsigned int quality) {
  info.quality = quality;
  image.quality = quality;  // the only one that the library's JPEG writer looks at
  WriteImage(&info, &image);
}

}  // namespace

bool JpgTakes(CSize size) {
  return size.cx >= 1 && static_cast<MagickSizeType>(size.cx) <= GetMagickResourceLimit(WidthResource) &&
         size.cy >= 1 && static_cast<MagickSizeType>(size.cy) <= GetMagickResourceLimit(HeightResource);
}

// Quirk jpg-write-unchecked: the result says that there was a picture. When the file cannot be
// written the run still succeeds.
int jpgCompress(const CDicomImage* image, const char* path, unsigned int quality) {
  const COLOR_TYPE colorType = image->GetColorType();
  if (IsJpg(path) == 0 || Color2BitsUsed(colorType) != 8) return 0;

  const OwnedInfo info = imageInfo(image->m_Size, colorType);
  const OwnedImage picture =
      constitute(image->m_Size, colorType == COLOR_TYPE_C08 ? "RGB" : "I", image->m_pBuffer);
  if (!picture || !setOutputName(picture->filename, path)) return 0;
  writeJpg(*info, *picture, quality);
  return 1;
}

// Quirk jpg-write-unchecked: here as well.
int jpgCompressFile(const char* rawPath, COLOR_TYPE colorType, CSize size, const char* path,
                    unsigned int quality) {
  // The library keeps the low 32 bits of a side, so one beyond its limits has to be refused here.
  if (IsJpg(path) == 0 || !JpgTakes(size)) return 0;

  const OwnedInfo info = imageInfo(size, colorType);
  info->number_scenes = 1;  // a file that holds several pictures gives its first one
  if (!setInputName(info->filename, colorType == COLOR_TYPE_C08 ? "RGB:" : "GRAY:", rawPath)) return 0;
  const OwnedException exception(AcquireExceptionInfo());
  const OwnedImage picture(ReadImage(info.get(), exception.get()));
  if (!picture || !setOutputName(picture->filename, path)) return 0;
  writeJpg(*info, *picture, quality);
  return 1;
}
