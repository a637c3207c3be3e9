// Headerless image files.
#pragma once

#include <memory>

#include "image/color_type.h"
#include "image/dicom_image.h"
#include "types/types.h"

/// Reads an image file without a header: rows from the top, pixels as CDicomImage lays them out.
/// Returns null when the buffer cannot be had, the file cannot be opened (also for a null path), or reading
/// it fails, as with a folder. A file that is too short leaves the rest of the image black, unless it may not
/// claim one of that size (driver/picture_limit.h), which gives null; a longer one is read in part. size and colorType are not changed, the last argument is ignored.
std::unique_ptr<CDicomImage> ReadDicomImage(const char* path, CSize& size, COLOR_TYPE& colorType,
                                            CSize* ignored);
