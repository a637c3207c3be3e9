#include "annotation/ann_oval.h"

#include <utility>

#include "annotation/report_fields.h"

CAnnOval::~CAnnOval() = default;

CPoint CAnnOval::GetIndexCenter() { return m_ptBase + m_sizeIndexOffset; }
void CAnnOval::SetIndexCenter(CPoint pt) { m_sizeIndexOffset = pt - m_ptBase; }
CPoint CAnnOval::GetValueCenter() { return m_ptBase + m_sizeValueOffset; }
void CAnnOval::SetValueCenter(CPoint pt) { m_sizeValueOffset = pt - m_ptBase; }
void CAnnOval::CountValue() {}
ANN_MODE CAnnOval::GetAnnMode() { return ANN_OVAL; }

int CAnnOval::SetAnnotationReport(unsigned int version, char* text, int nCalc) {
  ReportFields fields(SetAnnotationReportBase(version, text));
  const CPoint second = fields.TakePoint();
  CString value = fields.TakeText();
  if (fields.Missing()) return 0;

  m_ptSecond = second;
  m_strValue = std::move(value);
  if (fields.MoreOnLine()) m_dValue = fields.TakeReal();
  CalcNewAnnotation(nCalc);
  return 1;
}

CAnnArea::~CAnnArea() = default;
ANN_MODE CAnnArea::GetAnnMode() { return ANN_AREA; }

int CAnnArea::SetAnnotationReport(unsigned int version, char* text, int nCalc) {
  return CAnnOval::SetAnnotationReport(version, text, nCalc);
}

CAnnLight::~CAnnLight() = default;
ANN_MODE CAnnLight::GetAnnMode() { return ANN_LIGHT; }

int CAnnLight::SetAnnotationReport(unsigned int version, char* text, int nCalc) {
  ReportFields fields(SetAnnotationReportBase(version, text));
  const CPoint second = fields.TakePoint();
  CString value = fields.TakeText();
  const double density = fields.TakeReal();
  if (fields.Missing()) return 0;

  m_ptSecond = second;
  m_strValue = std::move(value);
  CalcNewAnnotation(nCalc);
  m_dValue = density;  // Quirk reported-density-wins: whatever has been measured
  return 1;
}
