#include <cmath>

#include "annotation/ann_cob_angle.h"
#include "annotation/annotation_set.h"
#include "annotation/display_geometry.h"
#include "annotation/figure_pens.h"

namespace {

// A plain dashed line in the selected pen. Dashes off the picture are left out.
void paintDashedLine(CDC* dc, CPoint from, CPoint to) {
  constexpr long kDash = 3;
  constexpr long kPeriod = 6;
  const Way way(from, to);
  const double length = way.Length();
  const Way::Stretch near = way.StretchNear(dc->GetImageSize(), kStrokeReach + kPeriod);
  if (length == 0 || !near.any) return;

  const auto pointAt = [&](long distance) { return way.PointAt(static_cast<double>(distance), length); };
  const auto end = static_cast<long>(std::ceil(near.to * length));
  for (long dash = static_cast<long>(near.from * length) / kPeriod * kPeriod; dash < end; dash += kPeriod) {
    dc->MoveTo(pointAt(dash));
    dc->LineTo(static_cast<double>(dash + kDash) < length ? pointAt(dash + kDash) : to);
  }
}

}  // namespace

void CAnnCOBAngle::PaintAnnotation(CDC* dc, double scale) {
  const CPoint upperStart = m_pSet->ImageToDisplay(m_ptBase);
  const CPoint upperEnd = m_pSet->ImageToDisplay(m_ptTop);
  const CPoint lowerStart = m_pSet->ImageToDisplay(m_ptSecond);
  const CPoint lowerEnd = m_pSet->ImageToDisplay(m_ptBottom);

  FigurePens pens(dc, *this, scale);
  dc->MoveTo(upperStart);
  LineToShadow(dc, upperEnd, pens.Shadow());
  dc->MoveTo(lowerStart);
  LineToShadow(dc, lowerEnd, pens.Shadow());
  paintDashedLine(dc, MiddleOf(upperStart, upperEnd), MiddleOf(lowerStart, lowerEnd));

  PaintIndex(dc, GetPenColor(), m_pSet->ImageToDisplay(GetIndexCenter()), scale);
  PaintValue(dc, GetPenColor(), m_pSet->ImageToDisplay(GetValueCenter()), scale);
}
