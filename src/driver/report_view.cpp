#include "driver/report_view.h"

#include <algorithm>
#include <limits>

#include "annotation/annotation_set.h"

namespace {

using Int = std::numeric_limits<int>;

bool fitsInt(long value) { return value >= Int::min() && value <= Int::max(); }

/// True when `value`, once truncated, is an int. Not for what is no number.
bool fitsInt(double value) { return value > Int::min() - 1.0 && value < Int::max() + 1.0; }

bool isBox(CSize size) { return size.cx >= 1 && size.cy >= 1 && fitsInt(size.cx) && fitsInt(size.cy); }

/// One direction of the refitting: where the image begins, its size, and the sides of the clip and the box.
/// Returns false when a number does not fit an int.
bool refit(long& offset, long& size, long clip, long target, double scale) {
  if (!fitsInt(offset) || !fitsInt(size)) return false;
  const long way = clip / 2 - offset;  // from the image's corner to the clip's centre
  const double scaledSize = static_cast<double>(size) * scale;
  const double scaledWay = static_cast<double>(way) * scale;
  if (!fitsInt(scaledSize) || !fitsInt(scaledWay)) return false;
  size = static_cast<long>(scaledSize);
  offset = target / 2 - static_cast<long>(scaledWay);
  return fitsInt(offset);
}

}  // namespace

bool CountImageSizes(CPoint& offset, CSize& displaySize, CSize clip, CSize target) {
  if (!isBox(clip) || !isBox(target)) return false;
  const double scale = std::min(static_cast<double>(target.cx) / static_cast<double>(clip.cx),
                                static_cast<double>(target.cy) / static_cast<double>(clip.cy));
  CPoint newOffset = offset;
  CSize newSize = displaySize;
  if (!refit(newOffset.x, newSize.cx, clip.cx, target.cx, scale) ||
      !refit(newOffset.y, newSize.cy, clip.cy, target.cy, scale)) {
    return false;
  }
  offset = newOffset;
  displaySize = newSize;
  return true;
}

bool FitReportView(CAnnotationSet& set, CSize geometry) {
  const CSize none(0, 0);
  if (set.m_bReported[CAnnotationSet::REPORTED_CLIP] == 0) {
    if (geometry == none) geometry = CSize(128, 128);
    set.m_ptOffset = CPoint(0, 0);
    set.m_sizeClip = set.GetDstImageSize();
  }
  if (geometry == none) return true;

  CPoint offset = set.m_ptOffset;
  CSize displaySize = set.GetDstImageSize();
  if (!CountImageSizes(offset, displaySize, set.m_sizeClip, geometry)) return false;
  set.m_ptOffset = offset;
  set.m_sizeClip = geometry;
  set.SetDstImageSize(displaySize);
  return true;
}
