// Free text on the picture, and the spine label, which is such a text too.
#pragma once

#include "annotation/annotation.h"

/// A text that hangs at its base point, always upright.
class CAnnText : public CAnnotation {
 public:
  ~CAnnText() override;
  void PaintAnnotation(CDC* dc, double scale) override;
  CPoint GetIndexCenter() override;
  void SetIndexCenter(CPoint pt) override;
  CPoint GetValueCenter() override;
  void SetValueCenter(CPoint pt) override;
  void CountValue() override;  ///< value 0, no value text
  ANN_MODE GetAnnMode() override;
  int SetAnnotationReport(unsigned int version, char* text, int nCalc) override;
  /// Where the text stands, display pixels; m_sizeText must have been measured.
  virtual void GetTextRect(CRect* rect);

  /// Width and height of a text in the context's font, pixels.
  static CSize CalcTextSize(CDC* dc, const CString& text, double scale);

  CString m_strText;
  CSize m_sizeText{0, 0};  ///< of m_strText on the display, pixels; measured by painting
};

/// The name of a vertebra, centred on its base point.
class CAnnSpnLabel : public CAnnText {
 public:
  ~CAnnSpnLabel() override;
  void PaintAnnotation(CDC* dc, double scale) override;
  ANN_MODE GetAnnMode() override;
  int SetAnnotationReport(unsigned int version, char* text, int nCalc) override;
  void GetTextRect(CRect* rect) override;

  void SetSpnSize(int cx, int cy);

  int m_nSpn = 0;         ///< the report's number; only kept
  CSize m_sizeSpn{0, 0};  ///< the report's pair; only kept
  int m_bFromReport = 0;  ///< it was read from a report
};
