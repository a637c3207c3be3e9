// An arrow to a finding.
#pragma once

#include "annotation/annotation.h"

/// The tip is the base point, the tail the second point.
class CAnnPointer : public CAnnotation {
 public:
  ~CAnnPointer() override;
  void PaintAnnotation(CDC* dc, double scale) override;
  CPoint GetIndexCenter() override;
  void SetIndexCenter(CPoint pt) override;
  CPoint GetValueCenter() override;
  void SetValueCenter(CPoint pt) override;
  void CountValue() override;  ///< nothing
  ANN_MODE GetAnnMode() override;
  int SetAnnotationReport(unsigned int version, char* text, int nCalc) override;

  /// Turns the second point from a pair of direction code (0 to 7, eighths of a turn) and length code (0 to 7)
  /// into the tail's place. `code` 11 and 19 mean this pair; others change nothing.
  void SetPointerDirection(int code);

  /// The two ends of the head's barbs.
  struct Head {
    CPoint first;
    CPoint second;
    bool any;  ///< false when tip and tail are one point: no barbs
  };
  /// In the unit of its arguments; on the display the head thus keeps its size under any zoom.
  static Head CalcPointerHead(CPoint tip, CPoint tail, double scale);

  CPoint m_ptSecond{0, 0};

 private:
  void PaintPointerValue(CDC* dc, unsigned int color, CPoint tip, CPoint tail, double scale);
};
