// Pictures to draw on, and MagickCore called directly, to compare with. The drawing context takes no part in it.
#pragma once

#include <magick/MagickCore.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "draw/font_folder.h"

namespace ei4::test {

/// Starts MagickCore once for the test program: with the font of the build tree, on one thread.
inline void startDrawing() {
  struct Library {
    Library() {
      AddFontFolder();
      MagickCoreGenesis("", MagickFalse);
      SetMagickResourceLimit(ThreadResource, 1);
    }
    ~Library() { MagickCoreTerminus(); }
  };
  static const Library library;
}

struct DestroyPicture {
  void operator()(Image* image) const noexcept { DestroyImageList(image); }
  void operator()(ImageInfo* info) const noexcept { DestroyImageInfo(info); }
  void operator()(DrawInfo* info) const noexcept { DestroyDrawInfo(info); }
  void operator()(ExceptionInfo* exception) const noexcept { DestroyExceptionInfo(exception); }
};
template <class T>
using OwnedPicturePart = std::unique_ptr<T, DestroyPicture>;

/// Bytes with no pattern, the same in every run.
inline std::vector<unsigned char> unevenBytes(int n) {
  std::vector<unsigned char> bytes;
  std::uint32_t state = 12345;
  for (int i = 0; i < n; ++i) {
    state = state * 1664525 + 1013904223;
    bytes.push_back(static_cast<unsigned char>(state >> 24));
  }
  return bytes;
}

/// A picture as the report flow makes it: "I" (grey) or "RGB", 8 bits; or "RGBA".
class Picture {
 public:
  /// Every pixel differs from its neighbours.
  explicit Picture(int width, int height, const char* map = "I")
      : Picture(width, height, map, unevenBytes(width * height * static_cast<int>(std::strlen(map)))) {}

  /// A byte for each letter of `map`, pixel by pixel and row by row.
  Picture(int width, int height, const char* map, const std::vector<unsigned char>& bytes) {
    startDrawing();
    const OwnedPicturePart<ExceptionInfo> exception(AcquireExceptionInfo());
    m_info.reset(AcquireImageInfo());
    m_image.reset(ConstituteImage(static_cast<std::size_t>(width), static_cast<std::size_t>(height), map,
                                  CharPixel, bytes.data(), exception.get()));
  }

  Image* image() const { return m_image.get(); }
  ImageInfo* info() const { return m_info.get(); }

  /// Every channel of every pixel, 16 bits each.
  std::vector<std::uint16_t> pixels() const {
    const OwnedPicturePart<ExceptionInfo> exception(AcquireExceptionInfo());
    std::vector<std::uint16_t> all(4 * m_image->columns * m_image->rows);
    ExportImagePixels(m_image.get(), 0, 0, m_image->columns, m_image->rows, "RGBA", ShortPixel, all.data(),
                      exception.get());
    return all;
  }

  /// What else of the image decides how it is written.
  std::string state() const {
    const char* vectors = GetImageArtifact(m_image.get(), "mvg:vector-graphics");
    return std::to_string(m_image->storage_class) + ' ' + std::to_string(m_image->colorspace) + ' ' +
           std::to_string(m_image->matte) + ' ' + (vectors != nullptr ? vectors : "");
  }

  /// Draws a primitive one pixel wide.
  void draw(const std::string& primitive, const char* stroke, const char* fill) const {
    const OwnedPicturePart<DrawInfo> info(newDrawInfo(stroke, fill));
    info->stroke_width = 1.0;
    CloneString(&info->primitive, primitive.c_str());
    DrawImage(m_image.get(), info.get());
  }

  /// Draws a text in Courier, 12 points, or in the font given.
  void annotate(const std::string& text, const std::string& geometry, const char* fill,
                const char* font = "Courier") const {
    const OwnedPicturePart<DrawInfo> info(newDrawInfo("none", fill));
    info->stroke_width = 0.01;
    info->pointsize = 12.0;
    CloneString(&info->font, font);
    CloneString(&info->text, text.c_str());
    CloneString(&info->geometry, geometry.c_str());
    AnnotateImage(m_image.get(), info.get());
  }

 private:
  static DrawInfo* newDrawInfo(const char* stroke, const char* fill) {
    const OwnedPicturePart<ExceptionInfo> exception(AcquireExceptionInfo());
    DrawInfo* info = AcquireDrawInfo();
    QueryColorDatabase(stroke, &info->stroke, exception.get());
    QueryColorDatabase(fill, &info->fill, exception.get());
    return info;
  }

  OwnedPicturePart<ImageInfo> m_info;
  OwnedPicturePart<Image> m_image;
};

}  // namespace ei4::test
