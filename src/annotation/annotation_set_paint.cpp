#include "annotation/annotation_set.h"
#include "annotation/dash_rectangle.h"

void CAnnotationSet::PaintAnnotations(CDC* dc, double scale) {
  for (POSITION position = m_listAnnotations.GetHeadPosition(); position != nullptr;) {
    CAnnotation* const annotation = m_listAnnotations.GetNext(position);
    // Quirk calibrations-stay-hidden: they are read and kept, and nothing in this program paints them.
    if (annotation->GetAnnMode() != ANN_CALIB) annotation->PaintAnnotation(dc, scale);
  }
  if (m_bRoi != 0) DrawDashRectangle(dc, GetRoiDisplay(), 3, 3, 0x000000, 0xAAAAAA, 1);
}

void CAnnotationSet::PaintCalibrations(CDC* dc, double scale) {
  for (POSITION position = m_listAnnotations.GetHeadPosition(); position != nullptr;) {
    CAnnotation* const annotation = m_listAnnotations.GetNext(position);
    if (annotation->GetAnnMode() == ANN_CALIB) annotation->PaintAnnotation(dc, scale);
  }
}
