#include <array>
#include <vector>

#include "annotation/annotation.h"
#include "annotation/display_geometry.h"
#include "annotation/paint_style.h"
#include "annotation/selected.h"
#include "annotation/shadowed_text.h"

namespace {

// A shadow is drawn twice: one pixel to the right and one down, then one to the right.
constexpr std::array<int, 2> kShadowsDown{1, 0};

}  // namespace

void CAnnotation::PaintValue(CDC* dc, unsigned int color, CPoint pt, double scale) {
  if (m_bShowValue == 0) return;
  DrawShadowedText(dc, m_strValue, PlaceAt(pt), color, kLabelCentered, scale);
}

void CAnnotation::PaintIndex(CDC* dc, unsigned int color, CPoint pt, double scale) {
  if (m_bShowIndex == 0) return;
  CString number;
  number.Format("%d", m_nIndex);
  DrawShadowedText(dc, number, PlaceAt(pt), color, kLabelCentered, scale);
}

std::unique_ptr<CPen> CAnnotation::CreateShadowPen(double scale, unsigned int color) const {
  if (IsAlternate()) color = GetBrightColor(color);
  return std::make_unique<CPen>(0, GetLineWidth(1, scale), GetShadowColor(color));
}

void CAnnotation::LineToShadow(CDC* dc, CPoint to, CPen* shadowPen) {
  const CPoint from = dc->GetCurrentPosition();
  {
    const Selected<CPen> shadow(dc, shadowPen);
    for (const int down : kShadowsDown) {
      dc->MoveTo(Moved(from, 1, down));
      dc->LineTo(Moved(to, 1, down));
    }
  }
  dc->MoveTo(from);
  dc->LineTo(to);
}

void CAnnotation::EllipseToShadow(CDC* dc, const CRect& rect, CPen* shadowPen) {
  const Selected<CBrush> outlineOnly(dc, nullptr);
  {
    const Selected<CPen> shadow(dc, shadowPen);
    for (const int down : kShadowsDown) {
      const CRect moved = rect + CSize(1, down);
      dc->Ellipse(moved, 0.0);
    }
  }
  dc->Ellipse(rect, 0.0);
}

void CAnnotation::PolygonToShadow(CDC* dc, const CPoint* points, int count, CPen* shadowPen) {
  std::vector<tagPOINT> shape(static_cast<std::size_t>(count));
  const auto draw = [&](int right, int down) {
    for (std::size_t i = 0; i < shape.size(); ++i) shape[i] = Moved(points[i], right, down);
    dc->Polygon(shape.data(), count);
  };

  const Selected<CBrush> outlineOnly(dc, nullptr);
  {
    const Selected<CPen> shadow(dc, shadowPen);
    for (const int down : kShadowsDown) draw(1, down);
  }
  draw(0, 0);
}

// Quirk handles-not-shown: painters ask for boxes at the points of a selected figure, and none appear.
void CAnnotation::PaintSelectorBox(CDC* /*dc*/, CPoint /*pt*/, CPen* /*pen*/, CPen* /*shadowPen*/) {}
