#include "annotation/ann_text.h"
#include "annotation/annotation_set.h"
#include "annotation/paint_style.h"
#include "annotation/shadowed_text.h"
#include "text/geometry.h"

CSize CAnnText::CalcTextSize(CDC* dc, const CString& text, double /*scale*/) {
  CRect extent(0, 0, 0, 0);
  dc->DrawText(text, extent, kTextMeasured);
  return tagSIZE{extent.Width(), extent.Height()};
}

// The text was made in a view of its own, where it hung to the lower right of its point. It stays on that side
// of the anatomy, which is another side of the point when this view is turned otherwise.
void CAnnText::GetTextRect(CRect* rect) {
  const CPoint corner = m_pSet->ImageToDisplay(m_ptBase);
  const CSize side = OrientSizeForw(OrientSizeBack(CSize(1, 1), m_Orientation), m_pSet->m_Orientation);
  rect->left = side.cx > 0 ? corner.x : corner.x - m_sizeText.cx;
  rect->top = side.cy > 0 ? corner.y : corner.y - m_sizeText.cy;
  rect->right = rect->left + m_sizeText.cx;
  rect->bottom = rect->top + m_sizeText.cy;
}

void CAnnText::PaintAnnotation(CDC* dc, double scale) {
  m_sizeText = CalcTextSize(dc, m_strText, scale);
  CRect rect(0, 0, 0, 0);
  GetTextRect(&rect);
  const unsigned int color = GetPenColor();
  DrawShadowedText(dc, m_strText, rect, IsAlternate() ? GetBrightColor(color) : color, kLabelFromLeft, scale);
  PaintIndex(dc, color, m_pSet->ImageToDisplay(GetIndexCenter()), scale);
}

void CAnnSpnLabel::GetTextRect(CRect* rect) {
  const CPoint center = m_pSet->ImageToDisplay(m_ptBase);
  rect->left = center.x - m_sizeText.cx / 2;
  rect->top = center.y - m_sizeText.cy / 2;
  rect->right = rect->left + m_sizeText.cx;
  rect->bottom = rect->top + m_sizeText.cy;
}

void CAnnSpnLabel::PaintAnnotation(CDC* dc, double scale) { CAnnText::PaintAnnotation(dc, scale); }
