#include "driver/report_image.h"

#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <utility>

#include "annotation/annotation_set.h"
#include "driver/convertab.h"
#include "driver/options.h"
#include "driver/paths.h"
#include "driver/picture_limit.h"
#include "driver/read_annotation.h"
#include "driver/read_image.h"
#include "driver/report_picture.h"
#include "driver/report_view.h"
#include "driver/settings.h"
#include "image/dicom_image.h"

namespace {

bool hasPixels(CSize size) {
  constexpr long kMax = std::numeric_limits<int>::max();
  return size.cx >= 1 && size.cx <= kMax && size.cy >= 1 && size.cy <= kMax;
}

// Whether the view shows something and the picture can be made. A report may hold any numbers, also as its
// picture's size when no box is asked for.
bool canBePainted(const CAnnotationSet& set, CSize box) {
  return hasPixels(set.GetDstImageSize()) && IsOrientation(set.m_Orientation) &&
         ReportPictureTakes(set.m_sizeClip) &&
         (box != CSize(0, 0) || ei4::hasAtMost(set.m_sizeClip, ei4::kPixelsOfAReport));
}

// Paints the image in the report's view and window, into 8 bits a sample. Null when that fails.
std::unique_ptr<CDicomImage> paint(const CDicomImage& image, const CAnnotationSet& set, double intercept,
                                   double slope) {
  const COLOR_TYPE inType = image.GetColorType();
  const int inBits = Color2BitsUsed(inType);
  const Convertab table = CreateConvertab(intercept, slope, set.m_nLightWindow, set.m_nLightLevel,
                                          set.m_bLight1, inBits, 0, /*outBits=*/8, inBits);
  if (!table) return nullptr;

  CDicomImage* painted = nullptr;
  const int done =
      image.PaintImage(set.m_sizeClip, set.m_ptOffset, set.GetDstImageSize(), set.GetRoiDisplay(),
                       set.m_Orientation, set.m_bLight2, table.get(), /*background=*/0, /*mode=*/1,
                       inType == COLOR_TYPE_M16 ? COLOR_TYPE_M08 : inType, &painted);
  std::unique_ptr<CDicomImage> result(painted);
  return done != 0 ? std::move(result) : nullptr;
}

}  // namespace

int CreateReportImageFile(const char* szIn, COLOR_TYPE nInType, CSize csSource, const char* szOut,
                          CSize csGeom, int bHasQuality, unsigned int nQuality, const char* szReport,
                          double dOffset, double dScale) try {
  if (IsJpg(szOut) != 0 && bHasQuality == 0) return 0;

  // Quirk report-never-fails: from here on the answer is 1, whatever becomes of the picture.
  auto image = std::move(pImageFromEI4);
  CAnnotationSet set;
  if (ReadAnnotation(set, szReport, csSource) == 0) return 1;
  if (!FitReportView(set, csGeom) || !canBePainted(set, csGeom)) return 1;
  if (!image) image = ReadDicomImage(szIn, csSource, nInType, nullptr);  // last: it may be the dearest
  if (!image || !hasPixels(image->m_Size)) return 1;
  const auto painted = paint(*image, set, dOffset, dScale);
  if (!painted) return 1;
  image.reset();  // the drawing needs memory of its own
  WriteReportPicture(*painted, set, szOut, bHasQuality != 0 ? std::optional(nQuality) : std::nullopt);
  return 1;
} catch (const std::bad_alloc&) {
  return 1;  // Quirk report-never-fails: memory that ran short is no failure either
}
