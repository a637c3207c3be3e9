#include "annotation/ob_measure_oval.h"

#include <cstdlib>
#include <utility>

#include "annotation/report_fields.h"
#include "text/url_code.h"

CObMeasureOval::~CObMeasureOval() = default;
ANN_MODE CObMeasureOval::GetAnnMode() { return ANN_AREA; }
void CObMeasureOval::CountValue(bool&, double&, CString&) {}

int CObMeasureOval::SetAnnotationReport(unsigned int version, char* text, int nCalc) {
  ReportFields fields(SetAnnotationReportBase(version, text));
  const CPoint second = fields.TakePoint();
  CString value = fields.TakeWord();
  if (fields.Missing()) return 0;

  m_ptSecond = second;
  m_dValue = std::strtod(value, nullptr);  // Quirk number-before-decoding: "%31" is no number
  DecodeURL(value, value.GetBuffer());
  m_strValue = std::move(value);
  CalcNewAnnotation(nCalc);
  return 1;
}

CObMeasureHC::~CObMeasureHC() = default;
ANN_MODE CObMeasureHC::GetAnnMode() { return ANN_OB_HC; }

CObMeasureAC::~CObMeasureAC() = default;
ANN_MODE CObMeasureAC::GetAnnMode() { return ANN_OB_AC; }
