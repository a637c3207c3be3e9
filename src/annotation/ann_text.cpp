#include "annotation/ann_text.h"

#include <utility>

#include "annotation/report_fields.h"

CAnnText::~CAnnText() = default;

CPoint CAnnText::GetIndexCenter() { return m_ptBase + m_sizeIndexOffset; }
void CAnnText::SetIndexCenter(CPoint pt) { m_sizeIndexOffset = pt - m_ptBase; }
CPoint CAnnText::GetValueCenter() { return m_ptBase + m_sizeValueOffset; }
void CAnnText::SetValueCenter(CPoint pt) { m_sizeValueOffset = pt - m_ptBase; }

void CAnnText::CountValue() {
  m_dValue = 0.0;
  m_strValue.Empty();
}

ANN_MODE CAnnText::GetAnnMode() { return ANN_TEXT; }

int CAnnText::SetAnnotationReport(unsigned int version, char* text, int nCalc) {
  ReportFields fields(SetAnnotationReportBase(version, text));
  const int orientation = fields.TakeInt();
  CString content = fields.TakeText();
  if (fields.Missing()) return 0;

  m_Orientation = static_cast<ORIENTATION>(orientation);
  m_strText = std::move(content);
  CalcNewAnnotation(nCalc);
  return 1;
}

CAnnSpnLabel::~CAnnSpnLabel() = default;
ANN_MODE CAnnSpnLabel::GetAnnMode() { return ANN_SPNLABEL; }
void CAnnSpnLabel::SetSpnSize(int cx, int cy) { m_sizeSpn = CSize(cx, cy); }

int CAnnSpnLabel::SetAnnotationReport(unsigned int version, char* text, int nCalc) {
  ReportFields fields(SetAnnotationReportBase(version, text));
  const int orientation = fields.TakeInt();
  const int number = fields.TakeInt();
  const int cx = fields.TakeInt();
  const int cy = fields.TakeInt();
  CString content = fields.TakeText();
  if (fields.Missing()) return 0;

  m_Orientation = static_cast<ORIENTATION>(orientation);
  m_nSpn = number;
  SetSpnSize(cx, cy);
  m_strText = std::move(content);
  CalcNewAnnotation(nCalc);
  return 1;
}
