// The angle between two arms.
#pragma once

#include "annotation/annotation.h"

/// The base point is the vertex.
class CAnnAngle : public CAnnotation {
 public:
  ~CAnnAngle() override;
  void PaintAnnotation(CDC* dc, double scale) override;
  CPoint GetIndexCenter() override;  ///< relative to the vertex
  void SetIndexCenter(CPoint pt) override;
  CPoint GetValueCenter() override;  ///< relative to the midpoint of the arms' ends, halves truncated
  void SetValueCenter(CPoint pt) override;
  void CountValue() override;  ///< nothing
  ANN_MODE GetAnnMode() override;
  int SetAnnotationReport(unsigned int version, char* text, int nCalc) override;

  CPoint m_ptSecond{0, 0};  ///< end of the first arm
  CPoint m_ptThird{0, 0};   ///< end of the second arm

 private:
  CPoint MiddleOfArmEnds() const;
};
