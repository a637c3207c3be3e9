// A distance, and the calibration, which is drawn like one.
#pragma once

#include "annotation/annotation.h"

/// A line from the base point to an end point, with a bar across each end or a scale along it.
class CAnnRuler : public CAnnotation {
 public:
  ~CAnnRuler() override;
  void PaintAnnotation(CDC* dc, double scale) override;
  CPoint GetIndexCenter() override;
  void SetIndexCenter(CPoint pt) override;
  CPoint GetValueCenter() override;
  void SetValueCenter(CPoint pt) override;
  /// The length, in millimetres if both pixel spacings are known, else in pixels. Quirk zero-ruler-is-one: a
  /// length of exactly 0 is stored as 1.
  void CountValue() override;
  ANN_MODE GetAnnMode() override;
  int SetAnnotationReport(unsigned int version, char* text, int nCalc) override;

  /// Where the value label stands by itself, from the base point.
  CSize GetRulerValueOffset() const { return {0, 0}; }

  CPoint m_ptEnd{0, 0};
  int m_bTicks = 0;  ///< draw a scale; no report sets it
};

class CAnnCalib : public CAnnRuler {
 public:
  ~CAnnCalib() override;
  void PaintAnnotation(CDC* dc, double scale) override;
  void CountValue() override;  ///< nothing
  ANN_MODE GetAnnMode() override;
  int SetAnnotationReport(unsigned int version, char* text, int nCalc) override;
};
