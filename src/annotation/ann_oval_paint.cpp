#include <algorithm>

#include "annotation/ann_oval.h"
#include "annotation/annotation_set.h"
#include "annotation/display_geometry.h"
#include "annotation/figure_pens.h"

namespace {

// The library takes time in proportion to an ellipse's radius.
constexpr long kLongestSide = 200'000;

double square(double value) { return value * value; }

// The outline crosses the picture, or comes near: some of the picture lies outside the ellipse, and some inside.
bool outlineMayShow(const CRect& rect, CSize picture) {
  if (!MayShow(rect, picture)) return false;
  const double cx = static_cast<double>(rect.left + rect.right) / 2;
  const double cy = static_cast<double>(rect.top + rect.bottom) / 2;
  const double rx = static_cast<double>(rect.Width()) / 2;
  const double ry = static_cast<double>(rect.Height()) / 2;
  const double right = static_cast<double>(picture.cx);
  const double bottom = static_cast<double>(picture.cy);
  // How far out a point lies in an ellipse with radii larger or smaller by the reach of a stroke; 1: on it.
  const auto extent = [&](double x, double y, double grow) {
    return square((x - cx) / (rx + grow)) + square((y - cy) / (ry + grow));
  };
  constexpr double kReach = kStrokeReach;
  if (extent(std::clamp(cx, 0.0, right), std::clamp(cy, 0.0, bottom), kReach) > 1) return false;
  if (rx <= kReach || ry <= kReach) return true;
  return std::max({extent(0, 0, -kReach), extent(right, 0, -kReach), extent(0, bottom, -kReach),
                   extent(right, bottom, -kReach)}) >= 1;
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
