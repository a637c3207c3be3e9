// The Cobb angle: between two lines along end plates of the spine.
#pragma once

#include "annotation/annotation.h"

/// The upper line runs from the base point to the top point, the lower one from the second point to the bottom
/// point.
class CAnnCOBAngle : public CAnnotation {
 public:
  ~CAnnCOBAngle() override;
  void PaintAnnotation(CDC* dc, double scale) override;
  CPoint GetIndexCenter() override;
  void SetIndexCenter(CPoint pt) override;
  CPoint GetValueCenter() override;
  void SetValueCenter(CPoint pt) override;
  void CountValue() override;  ///< nothing
  ANN_MODE GetAnnMode() override;
  int SetAnnotationReport(unsigned int version, char* text, int nCalc) override;

  void SetCOBTop(CPoint pt);
  void SetCOBBottom(CPoint pt);

  CPoint m_ptSecond{0, 0};
  CPoint m_ptTop{0, 0};
  CPoint m_ptBottom{0, 0};
};
