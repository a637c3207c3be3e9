#include "annotation/annotation_set.h"

#include <memory>

#include "annotation/ann_angle.h"
#include "annotation/ann_cob_angle.h"
#include "annotation/ann_free.h"
#include "annotation/ann_oval.h"
#include "annotation/ann_pointer.h"
#include "annotation/ann_ruler.h"
#include "annotation/ann_text.h"
#include "annotation/ob_measure_oval.h"
#include "annotation/ob_measure_ruler.h"

namespace {

std::unique_ptr<CAnnotation> newAnnotation(ANN_MODE kind) {
  switch (kind) {
    case ANN_RULER:
      return std::make_unique<CAnnRuler>();
    case ANN_ANGLE:
      return std::make_unique<CAnnAngle>();
    case ANN_LIGHT:
      return std::make_unique<CAnnLight>();
    case ANN_AREA:
      return std::make_unique<CAnnArea>();
    case ANN_FREE:
      return std::make_unique<CAnnFree>();
    case ANN_POINTER:
      return std::make_unique<CAnnPointer>();
    case ANN_TEXT:
      return std::make_unique<CAnnText>();
    case ANN_SPNLABEL:
      return std::make_unique<CAnnSpnLabel>();
    case ANN_COBANGLE:
      return std::make_unique<CAnnCOBAngle>();
    case ANN_CALIB:
      return std::make_unique<CAnnCalib>();
    case ANN_OB_GSD:
      return std::make_unique<CObMeasureGsd>();
    case ANN_OB_CRL:
      return std::make_unique<CObMeasureCrl>();
    case ANN_OB_BPD:
      return std::make_unique<CObMeasureBpd>();
    case ANN_OB_HC:
      return std::make_unique<CObMeasureHC>();
    case ANN_OB_AC:
      return std::make_unique<CObMeasureAC>();
    case ANN_OB_FL:
      return std::make_unique<CObMeasureFl>();
    case ANN_OVAL:  // Quirk plain-oval-not-created: the kind has a class, but none is made
      break;
  }
  return nullptr;
}

bool isCalibration(CAnnotation* annotation) { return annotation->GetAnnMode() == ANN_CALIB; }

}  // namespace

CAnnotationSet::CAnnotationSet() = default;
CAnnotationSet::~CAnnotationSet() { DeleteAnnotations(); }

CAnnotation* CAnnotationSet::CreateAnnotation(ANN_MODE kind, CPoint pt, unsigned int color, CSize sizeImg,
                                              ORIENTATION orient) {
  return AppendAnnotation(kind, LowestFreeIndex(), pt, color, sizeImg, orient);
}

CAnnotation* CAnnotationSet::AppendAnnotation(ANN_MODE kind, int nIndex, CPoint pt, unsigned int color,
                                              CSize sizeImg, ORIENTATION orient) {
  if (sizeImg.cx != 0 && sizeImg.cy != 0) m_sizeImg = sizeImg;
  m_Orientation = orient;
  std::unique_ptr<CAnnotation> annotation = newAnnotation(kind);
  if (annotation == nullptr) return nullptr;
  annotation->Initialize(this, nIndex, pt, color, orient);
  annotation->m_dPixelX = m_dPixelX;
  annotation->m_dPixelY = m_dPixelY;
  m_listAnnotations.AddTail(annotation.get());
  return annotation.release();
}

// Quirk numbers-in-list-order: the lowest free one only when the list is in ascending order.
int CAnnotationSet::LowestFreeIndex() {
  int free = 1;
  for (POSITION position = m_listAnnotations.GetHeadPosition(); position != nullptr;) {
    if (m_listAnnotations.GetNext(position)->m_nIndex > free) break;
    ++free;
  }
  return free;
}

void CAnnotationSet::DeleteAnnotation(CAnnotation* annotation) {
  // From the end, where a report's bad lines leave theirs.
  for (POSITION position = m_listAnnotations.GetTailPosition(); position != nullptr;) {
    const POSITION here = position;
    if (m_listAnnotations.GetPrev(position) != annotation) continue;
    m_listAnnotations.RemoveAt(here);
    delete annotation;
    return;
  }
}

void CAnnotationSet::DeleteAnnotations() {
  while (!m_listAnnotations.IsEmpty()) delete m_listAnnotations.RemoveTail();
}

void CAnnotationSet::DeleteAnnotations(int bCalib) {
  for (POSITION position = m_listAnnotations.GetHeadPosition(); position != nullptr;) {
    const POSITION here = position;
    CAnnotation* const annotation = m_listAnnotations.GetNext(position);
    if (isCalibration(annotation) != (bCalib != 0)) continue;
    m_listAnnotations.RemoveAt(here);
    delete annotation;
  }
}

int CAnnotationSet::IsAnnotation(int bCalib) {
  for (POSITION position = m_listAnnotations.GetHeadPosition(); position != nullptr;) {
    if (isCalibration(m_listAnnotations.GetNext(position)) == (bCalib != 0)) return 1;
  }
  return 0;
}
