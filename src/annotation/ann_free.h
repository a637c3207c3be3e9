// An outline drawn by hand.
#pragma once

#include "annotation/annotation.h"
#include "types/array.h"

class CAnnFree : public CAnnotation {
 public:
  ~CAnnFree() override;
  void PaintAnnotation(CDC* dc, double scale) override;
  CPoint GetIndexCenter() override;
  void SetIndexCenter(CPoint pt) override;
  CPoint GetValueCenter() override;
  void SetValueCenter(CPoint pt) override;
  void CountValue() override;  ///< nothing
  ANN_MODE GetAnnMode() override;
  int SetAnnotationReport(unsigned int version, char* text, int nCalc) override;

  /// Moves vertices outside the set's picture to its edge.
  void LimitVertices();

  CArray<CPoint, CPoint> m_arrVertices;  ///< in drawing order; the last joins the first
};
