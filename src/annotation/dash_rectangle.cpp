#include "annotation/dash_rectangle.h"

#include <algorithm>
#include <vector>

#include "annotation/display_geometry.h"
#include "annotation/selected.h"

namespace {

struct Dash {
  long from;
  long to;
};

// The largest multiple of `period`, which is above 0, that is not above `value`.
long multipleBelow(long value, long period) {
  const long rest = value % period;
  return value - (rest < 0 ? rest + period : rest);
}

// The parts of the grid's dashes between two edges, as far as they can show on a picture with this side.
std::vector<Dash> dashesBetween(long from, long to, long gap, long dash, long side) {
  const long period = gap + dash;
  if (dash < 1 || period < 1) return {};
  std::vector<Dash> dashes;
  const long end = std::min(to, side + kStrokeReach);
  // Quirk dashes-keep-a-grid: it begins at coordinate 0, so a frame may begin within a dash or a gap.
  for (long start = multipleBelow(std::max(from, -kStrokeReach), period); start < end; start += period) {
    const Dash part{std::max(start, from), std::min(start + dash, to)};
    if (part.from < part.to) dashes.push_back(part);
  }
  return dashes;
}

bool isNear(long coordinate, long side) {
  return coordinate >= -kStrokeReach && coordinate <= side + kStrokeReach;
}

void drawLine(CDC* dc, CPoint from, CPoint to) {
  dc->MoveTo(from);
  dc->LineTo(to);
}

}  // namespace

void DrawDashRectangle(CDC* dc, CRect rect, int gap, int dash, unsigned int colorSolid,
                       unsigned int colorDash, int bSolid) {
  const CPoint first = Moved(rect.TopLeft(), 0, 0);
  const CPoint beyond = Moved(rect.BottomRight(), 0, 0);
  const CPoint last = Moved(beyond, -1, -1);
  const auto at = [](long x, long y) { return CPoint(static_cast<int>(x), static_cast<int>(y)); };

  CPen solidPen(0, 1, colorSolid);
  CPen dashPen(0, 1, colorDash);
  if (bSolid != 0) {
    const Selected<CPen> selected(dc, &solidPen);
    drawLine(dc, first, at(beyond.x, first.y));
    drawLine(dc, at(last.x, first.y), at(last.x, beyond.y));
    drawLine(dc, last, at(first.x, last.y));
    dc->LineTo(first);
  }

  const Selected<CPen> selected(dc, &dashPen);
  const CSize picture = dc->GetImageSize();
  for (const Dash part : dashesBetween(first.x, beyond.x, gap, dash, picture.cx)) {
    for (const long y : {first.y, last.y}) {
      if (isNear(y, picture.cy)) drawLine(dc, at(part.from, y), at(part.to, y));
    }
  }
  for (const Dash part : dashesBetween(first.y, beyond.y, gap, dash, picture.cy)) {
    for (const long x : {first.x, last.x}) {
      if (isNear(x, picture.cx)) drawLine(dc, at(x, part.from), at(x, part.to));
    }
  }
}
