#include "driver/report_image.h"

#include "driver/paths.h"
#include "driver/settings.h"

// The picture itself is drawn by a later version: for now this only answers as that one will.
int CreateReportImageFile(const char* /*szIn*/, COLOR_TYPE /*nInType*/, CSize /*csSource*/, const char* szOut,
                          CSize /*csGeom*/, int bHasQuality, unsigned int /*nQuality*/,
                          const char* /*szReport*/, double /*dOffset*/, double /*dScale*/) {
  if (IsJpg(szOut) != 0 && bHasQuality == 0) return 0;
  pImageFromEI4.reset();
  return 1;
}
