#include <algorithm>

#include "annotation/ann_oval.h"
#include "annotation/annotation_set.h"
#include "annotation/display_geometry.h"
#include "annotation/figure_pens.h"

namespace {

// Twice what any picture measures. The drawing context leaves larger ellipses to the library, which can take
// minutes for one.
constexpr long kLongestSide = 32'768;

double square(double value) { return value * value; }

// The outline crosses the picture or comes near: of the picture, grown by the reach of a stroke, some lies within
// the ellipse and some outside.
bool outlineMayShow(const CRect& rect, CSize picture) {
  if (!MayShow(rect, picture)) return false;
  const double cx = static_cast<double>(rect.left + rect.right) / 2;
  const double cy = static_cast<double>(rect.top + rect.bottom) / 2;
  const double rx = static_cast<double>(rect.Width()) / 2;
  const double ry = static_cast<double>(rect.Height()) / 2;
  if (rx < 1 || ry < 1) return true;
  const double first = -static_cast<double>(kStrokeReach);
  const double right = static_cast<double>(picture.cx + kStrokeReach);
  const double bottom = static_cast<double>(picture.cy + kStrokeReach);
  // How far out a point lies, squared; 1: on the ellipse.
  const auto extent = [&](double x, double y) { return square((x - cx) / rx) + square((y - cy) / ry); };
  if (extent(std::clamp(cx, first, right), std::clamp(cy, first, bottom)) > 1) return false;
  return std::max(
             {extent(first, first), extent(right, first), extent(first, bottom), extent(right, bottom)}) >= 1;
}

}  // namespace

void CAnnOval::PaintAnnotation(CDC* dc, double scale) {
  CRect rect(m_pSet->ImageToDisplay(m_ptBase), m_pSet->ImageToDisplay(m_ptSecond));
  rect.NormalizeRect();

  FigurePens pens(dc, *this, scale);
  const bool tooLarge = rect.Width() > kLongestSide || rect.Height() > kLongestSide;
  if (!tooLarge && outlineMayShow(rect, dc->GetImageSize())) EllipseToShadow(dc, rect, pens.Shadow());

  PaintIndex(dc, GetPenColor(), m_pSet->ImageToDisplay(GetIndexCenter()), scale);
  PaintValue(dc, GetPenColor(), m_pSet->ImageToDisplay(GetValueCenter()), scale);
}
