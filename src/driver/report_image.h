// The report picture of the option "-ima": the image with the measurements that were made on it.
#pragma once

#include "image/color_type.h"
#include "types/types.h"

/// Returns 0 for a ".jpg" output without a quality. Returns 1 in all other cases, also when nothing could be
/// read or written. Consumes pImageFromEI4 then.
int CreateReportImageFile(const char* szIn, COLOR_TYPE nInType, CSize csSource, const char* szOut,
                          CSize csGeom, int bHasQuality, unsigned int nQuality, const char* szReport,
                          double dOffset, double dScale);
