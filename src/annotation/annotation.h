// What all annotations have in common: the fields of every report line, the labels, the shadowed line.
#pragma once

#include <memory>

#include "annotation/ann_mode.h"
#include "draw/cdc.h"
#include "draw/pen_brush.h"
#include "types/cstring.h"
#include "types/orientation.h"
#include "types/types.h"

class CAnnotationSet;

/// One measurement. All points are in image coordinates; painting goes through the set's ImageToDisplay.
/// A label point is kept as an offset from a reference point, so that the label moves with the figure: from the
/// base point, or for the value of an angle the middle between its arms' ends. The getters add the two again.
class CAnnotation {
 public:
  CAnnotation() = default;
  CAnnotation(const CAnnotation&) = delete;
  CAnnotation& operator=(const CAnnotation&) = delete;

  virtual ~CAnnotation() = 0;
  /// Draws the figure and its labels. `scale` (1.0: as measured) widens lines and distances.
  virtual void PaintAnnotation(CDC* dc, double scale) = 0;
  virtual CPoint GetIndexCenter() = 0;
  virtual void SetIndexCenter(CPoint pt) = 0;
  virtual CPoint GetValueCenter() = 0;
  virtual void SetValueCenter(CPoint pt) = 0;
  /// Measures again what this kind measures itself, from its points and its pixel spacing.
  virtual void CountValue() = 0;
  virtual ANN_MODE GetAnnMode() = 0;
  /// Reads the fields of a report line; `text` stands on the first one behind the keyword, may be null and is
  /// not changed. Version 0 lines carry no orientation. nCalc: CountValue afterwards.
  /// Returns 1, or 0 when a field is missing: the annotation is then of no use.
  virtual int SetAnnotationReport(unsigned int version, char* text, int nCalc) = 0;

  /// Gives a new annotation its place. The set is not owned, never null and must outlive the annotation.
  void Initialize(CAnnotationSet* pSet, int nIndex, CPoint pt, unsigned int crColor, ORIENTATION orientation);

  /// The text in the empty rectangle at pt (display pixels), centred both ways, with its shadow one pixel
  /// right and below. Nothing unless m_bShowValue is set.
  void PaintValue(CDC* dc, unsigned int color, CPoint pt, double scale);
  /// The number of the annotation, drawn like a value. Nothing unless m_bShowIndex is set.
  void PaintIndex(CDC* dc, unsigned int color, CPoint pt, double scale);
  std::unique_ptr<CPen> CreateShadowPen(double scale, unsigned int color) const;

  unsigned int GetPenColor() const { return m_crColor; }
  /// True when all of the annotation is to be drawn in its bright colour.
  bool IsAlternate() const { return m_nState != 0 && m_nStateKind == 1; }

  CAnnotationSet* m_pSet = nullptr;
  int m_nIndex = 0;
  unsigned int m_crColor = 0;  ///< bits 0 to 23, three channels
  CPoint m_ptBase{0, 0};
  double m_dValue = 0.0;                              ///< measured or reported
  CPoint m_ptIndex{0, 0};                             ///< the index label's point, as the report gives it
  CPoint m_ptValue{0, 0};                             ///< the value label's point, as the report gives it
  ORIENTATION m_Orientation = ORIENTATION_AS_STORED;  ///< of the view in which it was made; any int
  CString m_strValue;
  int m_bShowValue = 0;
  int m_bShowIndex = 0;
  double m_dPixelX = 0.0;  ///< length units per image pixel; 0: unknown
  double m_dPixelY = 0.0;

  // The state of interactive use. Reports never set it.
  int m_bSelected = 0;
  int m_nState = 0;      ///< non-zero: alternate state
  int m_nStateKind = 0;  ///< 1: all of the annotation; others: one of its handle points

 protected:
  /// Reads the fields that all annotation lines share, up to the separator word "|...". Returns the first
  /// field behind it, or null when there is none. Returns null, too, having stored nothing, when a word is
  /// missing or no separator follows. Quirk separator-is-a-word: what is written together with the separator is lost.
  char* SetAnnotationReportBase(unsigned int version, char* text);
  /// Hands the two label points to SetIndexCenter and SetValueCenter, then measures if asked to.
  void CalcNewAnnotation(int nCalc);

  /// Draws from the context's current position to `to` in the selected pen over a shadow one pixel to the
  /// right and one down-right. `to` is the current position afterwards.
  static void LineToShadow(CDC* dc, CPoint to, CPen* shadowPen);
  /// Outlines with the same shadow, in the selected pen: the ellipse in a rectangle, a closed polygon.
  static void EllipseToShadow(CDC* dc, const CRect& rect, CPen* shadowPen);
  static void PolygonToShadow(CDC* dc, const CPoint* points, int count, CPen* shadowPen);
  /// Handle boxes are not shown in this program.
  void PaintSelectorBox(CDC* dc, CPoint pt, CPen* pen, CPen* shadowPen);

  CSize m_sizeIndexOffset{0, 0};  ///< from the reference point to the index label
  CSize m_sizeValueOffset{0, 0};  ///< from the reference point to the value label
};
