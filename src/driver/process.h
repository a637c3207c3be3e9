// The conversion: from an image in memory or in a raw file to a raw or JPEG file.
#pragma once

#include "image/color_type.h"
#include "types/types.h"

/// Converts one image and writes it. The image is pImageFromEI4 if there is one, which is then consumed, else
/// the headerless file `szIn` of `csSource` pixels in the format nInType.
///
/// bHasGeom, csGeom       fit the picture into that box, in pixels.
/// bHasOutType, nOutType  pixel format of the output; without it that of the input, where JPEG allows it.
/// bTable                 map the pixels through the table that nWidth (window width), nCentre (its
///                        level), dScale (slope), dOffset (intercept) and bInverse describe; without it
///                        the formats must be equal.
/// csOut                  out, pixels: the size of the written image. Unspecified after a failure.
/// nEncapsulate           the painter's sampling mode: 0 nearest sample, else averaging and interpolation.
/// bHasQuality, nQuality  0 to 100; a JPEG output needs it.
///
/// Returns 1 when the output was written, as far as the writers tell (see jpgCompress and SaveToFile).
/// Returns 0 for a request that is refused or that fails. Throws std::bad_alloc only.
int ProcessImage(const char* szIn, const char* szOut, CSize csSource, int bHasGeom, CSize csGeom,
                 COLOR_TYPE nInType, int bHasOutType, COLOR_TYPE nOutType, int bTable, int nWidth,
                 int nCentre, double dScale, double dOffset, int bInverse, CSize& csOut, int nEncapsulate,
                 int bHasQuality, unsigned int nQuality);
