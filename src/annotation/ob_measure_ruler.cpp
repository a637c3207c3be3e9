#include "annotation/ob_measure_ruler.h"

CObMeasureRuler::~CObMeasureRuler() = default;
ANN_MODE CObMeasureRuler::GetAnnMode() { return ANN_RULER; }
void CObMeasureRuler::CountValue(bool&, double&, CString&) {}

CObMeasureGsd::~CObMeasureGsd() = default;
void CObMeasureGsd::CountValue() {}  // Quirk obstetric-rulers-measure-nothing
ANN_MODE CObMeasureGsd::GetAnnMode() { return ANN_OB_GSD; }

CObMeasureCrl::~CObMeasureCrl() = default;
void CObMeasureCrl::CountValue() {}
ANN_MODE CObMeasureCrl::GetAnnMode() { return ANN_OB_CRL; }

CObMeasureBpd::~CObMeasureBpd() = default;
void CObMeasureBpd::CountValue() {}
ANN_MODE CObMeasureBpd::GetAnnMode() { return ANN_OB_BPD; }

CObMeasureFl::~CObMeasureFl() = default;
void CObMeasureFl::CountValue() {}
ANN_MODE CObMeasureFl::GetAnnMode() { return ANN_OB_FL; }
