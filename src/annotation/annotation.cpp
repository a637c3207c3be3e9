#include "annotation/annotation.h"

#include "annotation/report_fields.h"

CAnnotation::~CAnnotation() = default;

void CAnnotation::Initialize(CAnnotationSet* pSet, int nIndex, CPoint pt, unsigned int crColor,
                             ORIENTATION orientation) {
  m_pSet = pSet;
  m_nIndex = nIndex;
  m_ptBase = pt;
  m_crColor = crColor;
  m_Orientation = orientation;
}

char* CAnnotation::SetAnnotationReportBase(unsigned int version, char* text) {
  ReportFields fields(text);
  const int index = fields.TakeInt();
  const unsigned int color = fields.TakeColor();
  const CPoint base = fields.TakePoint();
  const bool showIndex = fields.TakeInt() != 0;
  const bool showValue = fields.TakeInt() != 0;
  const CPoint indexPoint = fields.TakePoint();
  const CPoint valuePoint = fields.TakePoint();
  const int orientation = version != 0 ? fields.TakeInt() : m_Orientation;
  const CString separator = fields.TakeWord();  // Quirk separator-is-a-word
  if (separator[0] != '|') return nullptr;      // also when any of the words is missing

  m_nIndex = index;
  m_crColor = color;
  m_ptBase = base;
  m_bShowIndex = showIndex;
  m_bShowValue = showValue;
  m_ptIndex = indexPoint;
  m_ptValue = valuePoint;
  m_Orientation = static_cast<ORIENTATION>(orientation);
  return fields.Rest();
}

void CAnnotation::CalcNewAnnotation(int nCalc) {
  SetIndexCenter(m_ptIndex);
  SetValueCenter(m_ptValue);
  if (nCalc != 0) CountValue();
}
