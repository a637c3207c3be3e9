#include "driver/jpg_writer.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "driver/magick_image.h"
#include "driver/options.h"
#include "driver/paths.h"

namespace {

// True when nothing in the path but its extension means anything to the library: it is made of letters, digits
// and a few marks.
bool isPlain(const char* path) {
  const auto plain = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '/' ||
           c == '.' || c == '_' || c == '-';
  };
  const std::string_view name = path;
  return std::all_of(name.begin(), name.end(), plain) && name != ".jpg" && !name.ends_with("/.jpg");
}

// Words the path so that the library writes a JPEG into the file of exactly this name. Left alone, it would
// take "png:x.jpg" for a format and a name, ".jpg" for a name without an extension, "|x.jpg" and "fd:1.jpg"
// for places to write to, and "%d" for the picture's number. False for a name that is then too long.
//
// A plain path goes without the format in front of it, which has the library read its list of other programs
// for formats: a twentieth of a thumbnail's time.
bool setOutputName(ei4::NameField& field, const char* path) {
  std::string name = *path == '/' ? "" : "./";
  for (const char* c = path; *c != '\0'; ++c) {
    name += *c;
    if (*c == '%') name += '%';
  }
  if (!ei4::setName(field, "jpg:", name.c_str())) return false;
  return !isPlain(path) || ei4::setName(field, "", name.c_str());
}

// The result of the writing is not asked for: see the quirk at the callers.
void writeJpg(ImageInfo& info, Image& image, unsigned int quality) {
  ei4::setQuality(info, image, quality);
  WriteImage(&info, &image);
}

}  // namespace

bool JpgTakes(CSize size) { return ei4::withinSideLimits(size); }

// Quirk jpg-write-unchecked: the result says that there was a picture. When the file cannot be
// written the run still succeeds.
int jpgCompress(const CDicomImage* image, const char* path, unsigned int quality) {
  const COLOR_TYPE colorType = image->GetColorType();
  if (IsJpg(path) == 0 || Color2BitsUsed(colorType) != 8) return 0;

  const ei4::OwnedInfo info = ei4::makeImageInfo(image->m_Size, Color2BitsUsed(colorType));
  const ei4::OwnedImage picture =
      ei4::constitute(image->m_Size, colorType == COLOR_TYPE_C08 ? "RGB" : "I", image->m_pBuffer);
  if (!picture || !setOutputName(picture->filename, path)) return 0;
  writeJpg(*info, *picture, quality);
  return 1;
}

// Quirk jpg-write-unchecked: here as well.
int jpgCompressFile(const char* rawPath, COLOR_TYPE colorType, CSize size, const char* path,
                    unsigned int quality) {
  // The library keeps the low 32 bits of a side, so one beyond its limits has to be refused here.
  if (IsJpg(path) == 0 || !JpgTakes(size)) return 0;

  const ei4::OwnedInfo info = ei4::makeImageInfo(size, Color2BitsUsed(colorType));
  info->number_scenes = 1;  // a file that holds several pictures gives its first one
  if (!ei4::setName(info->filename, colorType == COLOR_TYPE_C08 ? "RGB:" : "GRAY:", rawPath)) return 0;
  const ei4::OwnedException exception(AcquireExceptionInfo());
  const ei4::OwnedImage picture(ReadImage(info.get(), exception.get()));
  if (!picture || !setOutputName(picture->filename, path)) return 0;
  writeJpg(*info, *picture, quality);
  return 1;
}
