// JPEG files through MagickCore, which must have been started.
#pragma once

#include "image/color_type.h"
#include "image/dicom_image.h"
#include "types/types.h"

/// Writes `image`, 8-bit grey or colour, never null, to `path` (the name must end in ".jpg").
/// quality  0 to 100; what other numbers mean is up to the library.
/// Returns 1 when MagickCore took the pixels, even if the file could then not be written. Returns 0, and
/// writes nothing, for another name, a name too long for the library, 16-bit pixels, or sides that are 0 or
/// too large for it.
int jpgCompress(const CDicomImage* image, const char* path, unsigned int quality);

/// Writes the first picture of the headerless file `rawPath` as the JPEG file `path` (the name must end in
/// ".jpg"). colorType, size  how to read the file's bytes Returns 1 when the pixels were read, even if the
/// file could then not be written. Returns 0, and writes nothing, for a null or overlong name, a file that is
/// missing or shorter than the size says, or a size beyond the library.
int jpgCompressFile(const char* rawPath, COLOR_TYPE colorType, CSize size, const char* path,
                    unsigned int quality);
