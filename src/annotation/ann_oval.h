// Ellipses: an area, and an area with the density measured in it.
#pragma once

#include "annotation/annotation.h"

/// The ellipse in the upright rectangle between the base point and a second point.
class CAnnOval : public CAnnotation {
 public:
  ~CAnnOval() override;
  void PaintAnnotation(CDC* dc, double scale) override;
  CPoint GetIndexCenter() override;
  void SetIndexCenter(CPoint pt) override;
  CPoint GetValueCenter() override;
  void SetValueCenter(CPoint pt) override;
  void CountValue() override;  ///< nothing: the report's number stands
  ANN_MODE GetAnnMode() override;
  int SetAnnotationReport(unsigned int version, char* text, int nCalc) override;

  CPoint m_ptSecond{0, 0};
};

class CAnnArea : public CAnnOval {
 public:
  ~CAnnArea() override;
  ANN_MODE GetAnnMode() override;
  int SetAnnotationReport(unsigned int version, char* text, int nCalc) override;
};

class CAnnLight : public CAnnOval {
 public:
  ~CAnnLight() override;
  ANN_MODE GetAnnMode() override;
  int SetAnnotationReport(unsigned int version, char* text, int nCalc) override;
};
