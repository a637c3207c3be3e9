#include <cmath>
#include <cstdlib>
#include <vector>

#include "annotation/ann_ruler.h"
#include "annotation/annotation_set.h"
#include "annotation/display_geometry.h"
#include "annotation/figure_pens.h"
#include "annotation/paint_style.h"

namespace {

// A stroke across the ruler, as seen from the point where it stands.
struct Bar {
  CSize start;
  CSize across;
};

struct Bars {
  Bar shortOne;  // as long as the normal
  Bar longOne;   // half as long again
};

CSize scaled(CSize size, double scale) {
  return {GetLineWidth(static_cast<int>(size.cx), scale), GetLineWidth(static_cast<int>(size.cy), scale)};
}

CSize halfAsLongAgain(CSize size) {
  return {Truncated(1.5 * static_cast<double>(size.cx)), Truncated(1.5 * static_cast<double>(size.cy))};
}

Bars barsAcross(const Way& way, double length, double scale) {
  constexpr double kNormal = 8;
  const int x = Truncated(kNormal * way.DY() / length);
  const int y = -Truncated(kNormal * way.DX() / length);
  const CSize half = scaled(CSize(-x / 2, -y / 2), scale);
  const CSize normal = scaled(CSize(x, y), scale);
  return {{half, normal}, {halfAsLongAgain(half), halfAsLongAgain(normal)}};
}

// How much of the measured length lies between two ticks: a 1, 2 or 5 with zeros, not less than what
// `leastPixels` on the display stand for. The kind counts tenths of the way from one long tick to the next.
struct TickStep {
  double measure;
  int kind;
};

TickStep tickStep(double measure, double length, int leastPixels) {
  const double x = std::log10(leastPixels * measure / length);
  const double exponent = std::floor(x);
  const double base = std::pow(10.0, exponent);
  const double factor = std::ceil(std::pow(10.0, x - exponent));
  if (factor < 3) return {2 * base, 2};
  if (factor < 6) return {5 * base, 5};
  return {10 * base, 1};
}

struct Tick {
  CPoint at;
  bool isLong;
};

// The ticks from a ruler's start to just before its end; those that can't show on the picture are left out.
std::vector<Tick> ticksAlong(const Way& way, double length, double measure, double scale, CSize picture,
                             double margin) {
  const TickStep step = tickStep(measure, length, GetLineWidth(4, scale));
  const Way::Stretch near = way.StretchNear(picture, margin);
  constexpr double kMostSteps = 1e12;  // more than fit along the longest way
  const double steps = measure / step.measure;
  const bool isMeasured = steps > 0 && steps < kMostSteps;  // not so for measures that are no number
  if (!isMeasured || !near.any) return {};

  std::vector<Tick> ticks;
  const int longEvery = 10 / step.kind;
  const long last = static_cast<long>(near.to * steps);
  for (long i = static_cast<long>(near.from * steps); i <= last; ++i) {
    const double position = static_cast<double>(i) * step.measure;
    if (!(position < measure)) break;
    ticks.push_back({way.PointAt(position, measure), i % longEvery == 0});
  }
  return ticks;
}

double reachOf(const Bar& bar) {
  return static_cast<double>(std::labs(bar.start.cx) + std::labs(bar.start.cy) + std::labs(bar.across.cx) +
                             std::labs(bar.across.cy));
}

}  // namespace

void CAnnRuler::PaintAnnotation(CDC* dc, double scale) {
  const CPoint start = m_pSet->ImageToDisplay(m_ptBase);
  const CPoint end = m_pSet->ImageToDisplay(m_ptEnd);

  FigurePens pens(dc, *this, scale);
  dc->MoveTo(start);
  LineToShadow(dc, end, pens.Shadow());

  const Way way(start, end);
  const double length = way.Length() == 0 ? 1.0 : way.Length();
  const Bars bars = barsAcross(way, length, scale);
  const auto paintBar = [&](CPoint at, const Bar& bar) {
    const CPoint from = Moved(at, bar.start);
    dc->MoveTo(from);
    LineToShadow(dc, Moved(from, bar.across), pens.Shadow());
  };
  paintBar(end, bars.longOne);
  if (m_bTicks == 0) {
    paintBar(start, bars.longOne);
  } else {
    const double margin = reachOf(bars.longOne) + kStrokeReach;
    for (const Tick& tick : ticksAlong(way, length, m_dValue, scale, dc->GetImageSize(), margin)) {
      paintBar(tick.at, tick.isLong ? bars.longOne : bars.shortOne);
    }
  }

  if (m_bSelected != 0) {
    PaintSelectorBox(dc, start, pens.Handle(4), pens.Shadow());
    PaintSelectorBox(dc, end, pens.Handle(5), pens.Shadow());
  }

  PaintIndex(dc, GetPenColor(), m_pSet->ImageToDisplay(GetIndexCenter()), scale);
  PaintValue(dc, GetPenColor(), m_pSet->ImageToDisplay(GetValueCenter()), scale);
}

void CAnnCalib::PaintAnnotation(CDC* dc, double scale) { CAnnRuler::PaintAnnotation(dc, scale); }
