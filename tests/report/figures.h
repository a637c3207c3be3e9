// The figures of reports, made of the primitives they consist of.
#pragma once

#include <string>
#include <vector>

#include "report/drawing.h"

namespace ei4::test {

struct Colours {
  std::string figure;
  std::string shadow;
};

// A shadow lies one pixel right and down, then one pixel right; the figure itself comes last.
void shadowLine(Drawing& drawing, const Colours& colours, Point from, Point to);
void shadowEllipse(Drawing& drawing, const Colours& colours, Point centre, int radiusX, int radiusY);
void shadowPolygon(Drawing& drawing, const Colours& colours, const std::vector<Point>& corners);

/// A text whose baseline begins at `at`, after its shadow, which is one pixel right and down.
void shadowText(Drawing& drawing, const Colours& colours, Point at, const std::string& words);

/// A shadowed text around `centre`, counted in cells, halves cut off. Throws ScriptError when it begins left of
/// the picture: such texts move, and are to be spelled out.
void label(Drawing& drawing, const Colours& colours, Point centre, const std::string& words);

/// The frame of a region of interest, right and bottom outside: black, with grey dashes of 3 pixels wherever
/// a coordinate divided by 6 leaves 0, 1 or 2.
void roiFrame(Drawing& drawing, const Box& box);

}  // namespace ei4::test
