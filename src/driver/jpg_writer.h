// JPEG files through MagickCore, which must have been started.
#pragma once

#include "image/color_type.h"
#include "image/dicom_image.h"
#include "types/types.h"

/// True when both sides, in pixels, are at least 1 and within the limits that the library has for a side.
bool JpgTakes(CSize size);

/// Writes `image`, 8-bit grey or colour, never null, to the file `path`, whose name must end in ".jpg". No
/// other part of the name means anything to the library.
/// quality  0 to 100; what other numbers mean is up to the library.
///
/// Returns 1 when MagickCore took the pixels, even if the file could then not be written. Returns 0, and
/// writes nothing, for another name, a name too long for the library (up to 4089 bytes it is not, each '%'
/// counting twice), 16-bit pixels, sides that JpgTakes refuses, or more pixels than the library may hold.
int jpgCompress(const CDicomImage* image, const char* path, unsigned int quality);

/// Writes the first picture of the headerless file `rawPath` as the JPEG file `path`, as jpgCompress does.
/// colorType, size  how to read the file's bytes.
///
/// Returns 1 when the pixels were read, even if the file could then not be written. Returns 0, and writes
/// nothing, for another or overlong name, a null or overlong `rawPath`, a file that is missing or shorter
/// than the size says, or sides or pixels beyond the library.
int jpgCompressFile(const char* rawPath, COLOR_TYPE colorType, CSize size, const char* path,
                    unsigned int quality);
