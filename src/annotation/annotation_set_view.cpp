// The view: between the picture as it is stored and the picture as it is shown.

#include <algorithm>
#include <cmath>

#include "annotation/annotation_set.h"
#include "annotation/display_geometry.h"
#include "types/clamping.h"
#include "types/wrapping.h"

namespace {

// Toward zero. Far beyond an int's range the exact value no longer matters; the limit leaves room for a sum.
long truncated(double value) {
  constexpr double kLimit = 0x1p61;
  return std::isnan(value) ? 0 : static_cast<long>(std::clamp(value, -kLimit, kLimit));
}

CPoint toInts(tagPOINT pt) { return {clampedToInt(pt.x), clampedToInt(pt.y)}; }

CSize exchangedIf(bool exchange, CSize size) { return exchange ? CSize(tagSIZE{size.cy, size.cx}) : size; }

// Where a point of a picture of `size` pixels stands once that is turned or mirrored.
tagPOINT oriented(tagPOINT pt, tagSIZE size, ORIENTATION orientation) {
  const long fromRight = wrappingSubtract(size.cx, pt.x);
  const long fromBottom = wrappingSubtract(size.cy, pt.y);
  switch (orientation) {
    case ORIENTATION_QUARTER_TURN:
      return {fromBottom, pt.x};
    case ORIENTATION_HALF_TURN:
      return {fromRight, fromBottom};
    case ORIENTATION_THREE_QUARTERS:
      return {pt.y, fromRight};
    case ORIENTATION_MIRROR_LEFT_RIGHT:
      return {fromRight, pt.y};
    case ORIENTATION_OTHER_DIAGONAL:
      return {fromBottom, fromRight};
    case ORIENTATION_MIRROR_TOP_BOTTOM:
      return {pt.x, fromBottom};
    case ORIENTATION_MAIN_DIAGONAL:
      return {pt.y, pt.x};
    default:
      return pt;
  }
}

// The inverse. `size` is still that of the picture as stored.
tagPOINT orientedBack(tagPOINT pt, tagSIZE size, ORIENTATION orientation) {
  switch (orientation) {
    case ORIENTATION_QUARTER_TURN:
      return {pt.y, wrappingSubtract(size.cy, pt.x)};
    case ORIENTATION_THREE_QUARTERS:
      return {wrappingSubtract(size.cx, pt.y), pt.x};
    case ORIENTATION_OTHER_DIAGONAL:
      return {wrappingSubtract(size.cx, pt.y), wrappingSubtract(size.cy, pt.x)};
    default:
      return oriented(pt, size, orientation);  // the others undo themselves
  }
}

}  // namespace

void CAnnotationSet::SetDstImageSize(CSize size) {
  m_sizeDst = size;
  const CSize stored = exchangedIf(ExchangesSides(m_Orientation), size);
  m_dZoomX = static_cast<double>(stored.cx) / static_cast<double>(m_sizeImg.cx);
  m_dZoomY = static_cast<double>(stored.cy) / static_cast<double>(m_sizeImg.cy);
}

CSize CAnnotationSet::GetDstImageSize() const { return m_sizeDst; }

void CAnnotationSet::SetImgZoomFactor(double zoomX, double zoomY) {
  if (!(zoomX > 0.0 && zoomY > 0.0)) return;
  m_dZoomX = zoomX;
  m_dZoomY = zoomY;
  const CSize stored(Truncated(static_cast<double>(m_sizeImg.cx) * zoomX),
                     Truncated(static_cast<double>(m_sizeImg.cy) * zoomY));
  m_sizeDst = exchangedIf(ExchangesSides(m_Orientation), stored);
}

void CAnnotationSet::SetViewParameters(ORIENTATION orient, double zoomX, double zoomY, CPoint offset) {
  m_Orientation = orient;
  m_dZoomX = zoomX;
  m_dZoomY = zoomY;
  m_ptOffset = offset;
}

CPoint CAnnotationSet::ImageToDisplay(CPoint pt) const {
  const tagPOINT turned = oriented(pt, m_sizeImg, m_Orientation);
  // Quirk odd-beyond-seven: by the lowest bit of any value
  const bool exchanged = ExchangesSides(m_Orientation);
  const double zoomX = exchanged ? m_dZoomY : m_dZoomX;
  const double zoomY = exchanged ? m_dZoomX : m_dZoomY;
  const auto moved = [](long at, double zoom, long offset) {
    constexpr long kLimit = 1L << 61;
    return truncated(static_cast<double>(at) * zoom) + std::clamp(offset, -kLimit, kLimit);
  };
  return toInts({moved(turned.x, zoomX, m_ptOffset.x), moved(turned.y, zoomY, m_ptOffset.y)});
}

CPoint CAnnotationSet::DisplayToImage(CPoint pt) const {
  constexpr double kLeastZoom = 0.0001;
  tagPOINT turned = pt;
  if (m_dZoomX > kLeastZoom && m_dZoomY > kLeastZoom) {
    const bool exchanged = ExchangesSides(m_Orientation);
    const double zoomX = exchanged ? m_dZoomY : m_dZoomX;
    const double zoomY = exchanged ? m_dZoomX : m_dZoomY;
    turned.x = truncated(static_cast<double>(wrappingSubtract(pt.x, m_ptOffset.x)) / zoomX);
    turned.y = truncated(static_cast<double>(wrappingSubtract(pt.y, m_ptOffset.y)) / zoomY);
  }
  return toInts(orientedBack(turned, m_sizeImg, m_Orientation));
}

CRect CAnnotationSet::GetRoiDisplay() const {
  if (m_bRoi == 0) return {m_ptOffset, m_sizeDst};
  const tagRECT& roi = m_rectRoi;
  const CPoint corners[] = {
      ImageToDisplay(tagPOINT{roi.left, roi.top}), ImageToDisplay(tagPOINT{roi.right, roi.bottom}),
      ImageToDisplay(tagPOINT{roi.right, roi.top}), ImageToDisplay(tagPOINT{roi.left, roi.bottom})};
  CRect around(corners[0], corners[0]);
  for (const CPoint& corner : corners) {
    const CRect single(corner, corner);
    around.UnionRect(around, single);
  }
  return around;
}

int CAnnotationSet::IsImageFit() const { return IsImageModeFit(m_ImageMode) ? 1 : 0; }
int CAnnotationSet::IsImageZoom() const { return IsImageModeZoom(m_ImageMode) ? 1 : 0; }
int CAnnotationSet::IsImageActual() const { return IsImageModeActual(m_ImageMode) ? 1 : 0; }
