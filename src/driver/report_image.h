// The report picture of the option "-ima": the image in the view in which its measurements were made, with
// these drawn over it.
#pragma once

#include "image/color_type.h"
#include "types/types.h"

/// Makes and writes the report picture. The image is pImageFromEI4 if there is one, which is then consumed,
/// else the headerless file `szIn` of `csSource` pixels in the format nInType.
///
/// szOut                  the library chooses the format by its extension (see WriteReportPicture)
/// csGeom                 the size to make it, in pixels; (0, 0) for the size of the reported view
/// bHasQuality, nQuality  0 to 100; a ".jpg" output needs it
/// szReport               the report's file; window, level and inversion come from it
/// dOffset, dScale        intercept and slope of the stored values
///
/// Returns 0 for a ".jpg" output without a quality, with nothing done. Returns 1 in all other cases, also when
/// nothing could be read, painted or written, and when memory ran short. Never throws.
int CreateReportImageFile(const char* szIn, COLOR_TYPE nInType, CSize csSource, const char* szOut,
                          CSize csGeom, int bHasQuality, unsigned int nQuality, const char* szReport,
                          double dOffset, double dScale);
