#include "report/figures.h"

#include <utility>

#include "report/script.h"

namespace ei4::test {

namespace {

Point moved(Point point, int right, int down) { return {point.x + right, point.y + down}; }

std::vector<Point> moved(std::vector<Point> points, int right, int down) {
  for (Point& point : points) point = moved(point, right, down);
  return points;
}

bool isDashed(int coordinate) { return ((coordinate % 6) + 6) % 6 < 3; }

// The runs of dashed pixels from `from` to below `to`, each with the coordinate behind its last pixel.
std::vector<std::pair<int, int>> dashes(int from, int to) {
  std::vector<std::pair<int, int>> runs;
  for (int at = from; at < to; ++at) {
    if (!isDashed(at)) continue;
    if (runs.empty() || runs.back().second != at) runs.emplace_back(at, at);
    runs.back().second = at + 1;
  }
  return runs;
}

}  // namespace

void shadowLine(Drawing& drawing, const Colours& colours, Point from, Point to) {
  drawing.line(colours.shadow, moved(from, 1, 1), moved(to, 1, 1));
  drawing.line(colours.shadow, moved(from, 1, 0), moved(to, 1, 0));
  drawing.line(colours.figure, from, to);
}

void shadowEllipse(Drawing& drawing, const Colours& colours, Point centre, int radiusX, int radiusY) {
  drawing.ellipse(colours.shadow, moved(centre, 1, 1), radiusX, radiusY);
  drawing.ellipse(colours.shadow, moved(centre, 1, 0), radiusX, radiusY);
  drawing.ellipse(colours.figure, centre, radiusX, radiusY);
}

void shadowPolygon(Drawing& drawing, const Colours& colours, const std::vector<Point>& corners) {
  drawing.polygon(colours.shadow, moved(corners, 1, 1));
  drawing.polygon(colours.shadow, moved(corners, 1, 0));
  drawing.polygon(colours.figure, corners);
}

void shadowText(Drawing& drawing, const Colours& colours, Point at, const std::string& words) {
  drawing.text(colours.shadow, moved(at, 1, 1), words);
  drawing.text(colours.figure, at, words);
}

void label(Drawing& drawing, const Colours& colours, Point centre, const std::string& words) {
  const int width = static_cast<int>(words.size()) * kCellWidth;
  const Point at = {centre.x - width / 2, centre.y - kCellHeight / 2 + kCellHeight};
  if (at.x < 0) throw ScriptError("a label over the left edge");
  shadowText(drawing, colours, at, words);
}

void roiFrame(Drawing& drawing, const Box& box) {
  const std::string black = "#000000";
  const std::string grey = "#aaaaaa";
  const int lastColumn = box.right - 1;
  const int lastRow = box.bottom - 1;
  drawing.line(black, {box.left, box.top}, {box.right, box.top});
  drawing.line(black, {lastColumn, box.top}, {lastColumn, box.bottom});
  drawing.line(black, {lastColumn, lastRow}, {box.left, lastRow});
  drawing.line(black, {box.left, lastRow}, {box.left, box.top});
  for (const auto& [from, to] : dashes(box.left, box.right)) {
    drawing.line(grey, {from, box.top}, {to, box.top});
    drawing.line(grey, {from, lastRow}, {to, lastRow});
  }
  for (const auto& [from, to] : dashes(box.top, box.bottom)) {
    drawing.line(grey, {box.left, from}, {box.left, to});
    drawing.line(grey, {lastColumn, from}, {lastColumn, to});
  }
}

}  // namespace ei4::test
