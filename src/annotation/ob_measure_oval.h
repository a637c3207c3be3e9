// Obstetric circumferences: of the head and of the abdomen.
#pragma once

#include "annotation/ann_oval.h"

class CObMeasureOval : public CAnnArea {
 public:
  ~CObMeasureOval() override;
  ANN_MODE GetAnnMode() override;
  int SetAnnotationReport(unsigned int version, char* text, int nCalc) override;
  using CAnnOval::CountValue;
  virtual void CountValue(bool& known, double& value, CString& unit);  ///< changes nothing
};

class CObMeasureHC : public CObMeasureOval {
 public:
  ~CObMeasureHC() override;
  ANN_MODE GetAnnMode() override;

  int m_nMeasure = 34;  ///< the measure's fixed number
};

class CObMeasureAC : public CObMeasureOval {
 public:
  ~CObMeasureAC() override;
  ANN_MODE GetAnnMode() override;

  int m_nMeasure = 35;  ///< the measure's fixed number
};
