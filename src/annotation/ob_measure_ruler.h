// Obstetric lengths. Quirk obstetric-rulers-measure-nothing: their value stays 0, only its text is kept.
#pragma once

#include "annotation/ann_ruler.h"

class CObMeasureRuler : public CAnnRuler {
 public:
  ~CObMeasureRuler() override;
  ANN_MODE GetAnnMode() override;
  using CAnnRuler::CountValue;
  virtual void CountValue(bool& known, double& value, CString& unit);  ///< changes nothing
};

/// Gestational sac.
class CObMeasureGsd : public CObMeasureRuler {
 public:
  ~CObMeasureGsd() override;
  using CObMeasureRuler::CountValue;
  void CountValue() override;
  ANN_MODE GetAnnMode() override;
};

/// Crown to rump.
class CObMeasureCrl : public CObMeasureRuler {
 public:
  ~CObMeasureCrl() override;
  using CObMeasureRuler::CountValue;
  void CountValue() override;
  ANN_MODE GetAnnMode() override;
};

/// Between the parietal bones.
class CObMeasureBpd : public CObMeasureRuler {
 public:
  ~CObMeasureBpd() override;
  using CObMeasureRuler::CountValue;
  void CountValue() override;
  ANN_MODE GetAnnMode() override;
};

/// Length of the femur.
class CObMeasureFl : public CObMeasureRuler {
 public:
  ~CObMeasureFl() override;
  using CObMeasureRuler::CountValue;
  void CountValue() override;
  ANN_MODE GetAnnMode() override;
};
