#include "annotation/ann_angle.h"
#include "annotation/annotation_set.h"
#include "annotation/figure_pens.h"

void CAnnAngle::PaintAnnotation(CDC* dc, double scale) {
  const CPoint vertex = m_pSet->ImageToDisplay(m_ptBase);
  const CPoint second = m_pSet->ImageToDisplay(m_ptSecond);
  const CPoint third = m_pSet->ImageToDisplay(m_ptThird);

  FigurePens pens(dc, *this, scale);
  dc->MoveTo(vertex);
  LineToShadow(dc, second, pens.Shadow());
  dc->MoveTo(vertex);
  LineToShadow(dc, third, pens.Shadow());

  if (m_bSelected != 0) {
    PaintSelectorBox(dc, vertex, pens.Handle(6), pens.Shadow());
    PaintSelectorBox(dc, second, pens.Handle(7), pens.Shadow());
    PaintSelectorBox(dc, third, pens.Handle(8), pens.Shadow());
  }

  PaintIndex(dc, GetPenColor(), m_pSet->ImageToDisplay(GetIndexCenter()), scale);
  PaintValue(dc, GetPenColor(), m_pSet->ImageToDisplay(GetValueCenter()), scale);
}
