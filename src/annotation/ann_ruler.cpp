#include "annotation/ann_ruler.h"

#include <cmath>
#include <utility>

#include "annotation/report_fields.h"

CAnnRuler::~CAnnRuler() = default;

CPoint CAnnRuler::GetIndexCenter() { return m_ptBase + m_sizeIndexOffset; }
void CAnnRuler::SetIndexCenter(CPoint pt) { m_sizeIndexOffset = pt - m_ptBase; }
CPoint CAnnRuler::GetValueCenter() { return m_ptBase + GetRulerValueOffset() + m_sizeValueOffset; }
void CAnnRuler::SetValueCenter(CPoint pt) { m_sizeValueOffset = pt - (m_ptBase + GetRulerValueOffset()); }

void CAnnRuler::CountValue() {
  double dx = static_cast<double>(m_ptEnd.x) - static_cast<double>(m_ptBase.x);
  double dy = static_cast<double>(m_ptEnd.y) - static_cast<double>(m_ptBase.y);
  if (m_dPixelX != 0.0 && m_dPixelY != 0.0) {
    dx *= m_dPixelX;
    dy *= m_dPixelY;
  }
  const double length = std::sqrt(dx * dx + dy * dy);
  m_dValue = length == 0.0 ? 1.0 : length;  // Quirk zero-ruler-is-one
}

ANN_MODE CAnnRuler::GetAnnMode() { return ANN_RULER; }

int CAnnRuler::SetAnnotationReport(unsigned int version, char* text, int nCalc) {
  ReportFields fields(SetAnnotationReportBase(version, text));
  const CPoint end = fields.TakePoint();
  CString value = fields.TakeText();
  if (fields.Missing()) return 0;

  m_ptEnd = end;
  m_strValue = std::move(value);
  CalcNewAnnotation(nCalc);
  return 1;
}

CAnnCalib::~CAnnCalib() = default;
void CAnnCalib::CountValue() {}
ANN_MODE CAnnCalib::GetAnnMode() { return ANN_CALIB; }

int CAnnCalib::SetAnnotationReport(unsigned int version, char* text, int nCalc) {
  return CAnnRuler::SetAnnotationReport(version, text, nCalc);
}
