// Pictures of MagickCore's, made and owned safely. Private to this folder, as it shows the library's header.
#pragma once

#include <magick/MagickCore.h>

#include <memory>

#include "types/types.h"

namespace ei4 {

struct DestroyHandle {
  void operator()(ImageInfo* info) const noexcept { DestroyImageInfo(info); }
  void operator()(Image* images) const noexcept { DestroyImageList(images); }
  void operator()(ExceptionInfo* exception) const noexcept { DestroyExceptionInfo(exception); }
};
using OwnedInfo = std::unique_ptr<ImageInfo, DestroyHandle>;
using OwnedImage = std::unique_ptr<Image, DestroyHandle>;
using OwnedException = std::unique_ptr<ExceptionInfo, DestroyHandle>;

/// A field that holds a file name, such as Image::filename.
using NameField = char[MaxTextExtent];

/// Writes `prefix`, never null, and `path` behind it, worded so that a path that begins with "|" is the name of a
/// file. Returns false for a null path and for a name that is too long: it is never cut, as it would be another
/// file's.
bool setName(NameField& field, const char* prefix, const char* path);

/// True when both sides, in pixels, are at least 1 and within the limits that the library has for a side.
bool withinSideLimits(CSize size);

/// A default record for a picture of `size` pixels with samples of `depth` bits, not interlaced.
OwnedInfo makeImageInfo(CSize size, int depth);

/// What ConstituteImage makes of 8-bit samples, but with an answer where that ends the process.
/// map  "I" for grey or "RGB"
/// Returns null for a size outside the limits above, for more pixels than the library may hold, and when memory
/// runs short.
OwnedImage constitute(CSize size, const char* map, const void* pixels);

/// Sets the quality to write with: that of the info, which PNG looks at, and the image's own, which JPEG does.
void setQuality(ImageInfo& info, Image& image, unsigned int quality);

}  // namespace ei4
