#include "annotation/ann_angle.h"

#include <utility>

#include "annotation/display_geometry.h"
#include "annotation/report_fields.h"

CAnnAngle::~CAnnAngle() = default;

CPoint CAnnAngle::GetIndexCenter() { return m_ptBase + m_sizeIndexOffset; }
void CAnnAngle::SetIndexCenter(CPoint pt) { m_sizeIndexOffset = pt - m_ptBase; }
CPoint CAnnAngle::GetValueCenter() { return MiddleOfArmEnds() + m_sizeValueOffset; }
void CAnnAngle::SetValueCenter(CPoint pt) { m_sizeValueOffset = pt - MiddleOfArmEnds(); }

CPoint CAnnAngle::MiddleOfArmEnds() const { return MiddleOf(m_ptSecond, m_ptThird); }

void CAnnAngle::CountValue() {}
ANN_MODE CAnnAngle::GetAnnMode() { return ANN_ANGLE; }

int CAnnAngle::SetAnnotationReport(unsigned int version, char* text, int nCalc) {
  ReportFields fields(SetAnnotationReportBase(version, text));
  const CPoint second = fields.TakePoint();
  const CPoint third = fields.TakePoint();
  CString value = fields.TakeText();
  if (fields.Missing()) return 0;

  m_ptSecond = second;
  m_ptThird = third;
  m_strValue = std::move(value);
  CalcNewAnnotation(nCalc);
  return 1;
}
