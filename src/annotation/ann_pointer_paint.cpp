#include <algorithm>

#include "annotation/ann_pointer.h"
#include "annotation/annotation_set.h"
#include "annotation/display_geometry.h"
#include "annotation/figure_pens.h"
#include "annotation/paint_style.h"
#include "annotation/shadowed_text.h"
#include "draw/drawing_globals.h"

CAnnPointer::Head CAnnPointer::CalcPointerHead(CPoint tip, CPoint tail, double scale) {
  const Way shaft(tip, tail);
  if (shaft.Length() == 0) return {tip, tip, false};
  const double along = std::min<double>(GetLineWidth(10, scale), shaft.Length());
  const double aside = GetLineWidth(4, scale);
  const auto barb = [&](double side) {
    const int x = Truncated((shaft.DX() * along - side * shaft.DY()) / shaft.Length());
    const int y = Truncated((shaft.DY() * along + side * shaft.DX()) / shaft.Length());
    return Moved(tip, x, y);
  };
  return {barb(aside), barb(-aside), true};
}

void CAnnPointer::PaintAnnotation(CDC* dc, double scale) {
  const CPoint tip = m_pSet->ImageToDisplay(m_ptBase);
  const CPoint tail = m_pSet->ImageToDisplay(m_ptSecond);

  FigurePens pens(dc, *this, scale);
  dc->MoveTo(tail);
  LineToShadow(dc, tip, pens.Shadow());
  const Head head = CalcPointerHead(tip, tail, scale);
  if (head.any) {
    for (const CPoint barb : {head.first, head.second}) {
      dc->MoveTo(tip);
      LineToShadow(dc, barb, pens.Shadow());
    }
  }

  PaintIndex(dc, GetPenColor(), m_pSet->ImageToDisplay(GetIndexCenter()), scale);
  PaintPointerValue(dc, GetPenColor(), tip, tail, scale);
}

// The label stands at the tail, away from the tip, so that it hides neither the arrow nor the finding.
void CAnnPointer::PaintPointerValue(CDC* dc, unsigned int color, CPoint tip, CPoint tail, double scale) {
  if (m_bShowValue == 0 || m_strValue.GetLength() == 0) return;
  const long distance = GetLineWidth(4, scale);
  const auto paint = [&](CPoint pt, unsigned int format) {
    DrawShadowedText(dc, m_strValue, PlaceAt(pt), color, format, scale);
  };
  if (tail.x > tip.x) {
    paint(Moved(tail, distance, 0), kLabelRightOf);
  } else if (tail.x < tip.x) {
    paint(Moved(tail, -distance, 0), kLabelLeftOf);
  } else {
    const long away = distance + FONT_HEIGHT / 2;
    paint(Moved(tail, 0, tail.y < tip.y ? -away : away), kLabelCentered);
  }
}
