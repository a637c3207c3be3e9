#include "annotation/ann_cob_angle.h"

#include <utility>

#include "annotation/report_fields.h"

CAnnCOBAngle::~CAnnCOBAngle() = default;

CPoint CAnnCOBAngle::GetIndexCenter() { return m_ptBase + m_sizeIndexOffset; }
void CAnnCOBAngle::SetIndexCenter(CPoint pt) { m_sizeIndexOffset = pt - m_ptBase; }
CPoint CAnnCOBAngle::GetValueCenter() { return m_ptBase + m_sizeValueOffset; }
void CAnnCOBAngle::SetValueCenter(CPoint pt) { m_sizeValueOffset = pt - m_ptBase; }
void CAnnCOBAngle::CountValue() {}
ANN_MODE CAnnCOBAngle::GetAnnMode() { return ANN_COBANGLE; }

void CAnnCOBAngle::SetCOBTop(CPoint pt) { m_ptTop = pt; }
void CAnnCOBAngle::SetCOBBottom(CPoint pt) { m_ptBottom = pt; }

int CAnnCOBAngle::SetAnnotationReport(unsigned int version, char* text, int nCalc) {
  ReportFields fields(SetAnnotationReportBase(version, text));
  const CPoint second = fields.TakePoint();
  const CPoint top = fields.TakePoint();
  const CPoint bottom = fields.TakePoint();
  CString value = fields.TakeText();
  if (fields.Missing()) return 0;

  m_ptSecond = second;
  SetCOBTop(top);
  SetCOBBottom(bottom);
  m_strValue = std::move(value);
  CalcNewAnnotation(nCalc);
  return 1;
}
