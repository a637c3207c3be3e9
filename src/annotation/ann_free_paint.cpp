#include <algorithm>
#include <vector>

#include "annotation/ann_free.h"
#include "annotation/annotation_set.h"
#include "annotation/display_geometry.h"
#include "annotation/figure_pens.h"

namespace {

// The library draws no polygon of 2 points, and takes a second for 1000 vertices: then lines do the same.
constexpr int kLeastInPolygon = 3;
constexpr int kMostInPolygon = 2000;

CRect boundsOf(const std::vector<CPoint>& points) {
  CRect bounds(points.front(), points.front());
  for (const CPoint& point : points) {
    bounds.left = std::min(bounds.left, point.x);
    bounds.top = std::min(bounds.top, point.y);
    bounds.right = std::max(bounds.right, point.x);
    bounds.bottom = std::max(bounds.bottom, point.y);
  }
  return bounds;
}

}  // namespace

void CAnnFree::PaintAnnotation(CDC* dc, double scale) {
  std::vector<CPoint> points;
  points.reserve(static_cast<std::size_t>(m_arrVertices.GetSize()));
  for (int i = 0; i < m_arrVertices.GetSize(); ++i)
    points.push_back(m_pSet->ImageToDisplay(m_arrVertices[i]));

  FigurePens pens(dc, *this, scale);
  const int count = m_arrVertices.GetSize();
  const CSize picture = dc->GetImageSize();
  if (count >= kLeastInPolygon && count <= kMostInPolygon) {
    if (MayShow(boundsOf(points), picture)) PolygonToShadow(dc, points.data(), count, pens.Shadow());
  } else if (count >= 2) {
    if (count > 2) points.push_back(points.front());
    for (std::size_t i = 1; i < points.size(); ++i) {
      CRect bounds(points[i - 1], points[i]);
      bounds.NormalizeRect();
      if (!MayShow(bounds, picture)) continue;
      dc->MoveTo(points[i - 1]);
      LineToShadow(dc, points[i], pens.Shadow());
    }
  }

  PaintIndex(dc, GetPenColor(), m_pSet->ImageToDisplay(GetIndexCenter()), scale);
  PaintValue(dc, GetPenColor(), m_pSet->ImageToDisplay(GetValueCenter()), scale);
}
