// Which pixels an outline one pixel wide covers, and how far, as MagickCore has it. Private to this folder.
//
// MagickCore asks of each pixel in a figure's bounding box how near the outline is, which takes milliseconds for
// a figure of some size. Here only the pixels along the outline are asked, by the same law:
//
// * A pixel at distance d from the nearest segment is covered by (1.25 - d)^2: wholly up to d = 0.25, and not at
//   all from d = 1.25 on.
// * A segment reaches only the rows y with top - 1 < y <= bottom + 1, and a run of segments that all go down, or
//   all go up, only the columns x with left - 1 < x <= right + 1.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "types/tags.h"

namespace ei4 {

struct OutlinePoint {
  double x;
  double y;
};

/// A pixel of a row, and how far it is covered: from above 0 to 1.
struct Coverage {
  long x;
  double amount;
};

/// How often the library asks an edge about a pixel when it draws these points' outline itself: all edges about each
/// pixel of the bounding box, as far as that lies in the picture. Some 250 million can be asked in a second.
double libraryQuestions(std::span<const tagPOINT> points, tagSIZE picture);

/// One figure's outline. Each maker answers nothing for a figure that has to be left to MagickCore: one that it
/// refuses or treats in a way of its own, or one that is too large.
class Outline {
 public:
  static std::optional<Outline> line(int x1, int y1, int x2, int y2);
  static std::optional<Outline> ellipse(int cx, int cy, int rx, int ry);
  static std::optional<Outline> polyline(std::span<const tagPOINT> points);
  /// picture  size of what it will be drawn on, pixels. An outline that MagickCore would treat in a way of its own
  ///          is made all the same where drawing it there would take too long; some pixels at its left
  ///          then differ from the library's.
  static std::optional<Outline> polygon(std::span<const tagPOINT> points, tagSIZE picture);

  long pointCount() const;  ///< of the segments that it is made of

  /// The rows that it can cover: all others are empty.
  long firstRow() const;
  long lastRow() const;

  /// The pixels of row y with x in [0, columns) that are covered at all, each once, in no order. Rows have to be
  /// asked for from top to bottom, each with the same `columns`. Good until the next call.
  const std::vector<Coverage>& row(long y, long columns);

 private:
  // Segments that all go the same way, from top to bottom.
  struct Run {
    std::vector<OutlinePoint> points;
    double left;
    double right;
    std::size_t first = 1;  // the lower point of the first segment that the coming rows may still meet
  };

  explicit Outline(std::span<const OutlinePoint> points);
  static std::optional<Outline> ofVertices(std::span<const tagPOINT> points);
  bool hasHiddenEdges(std::optional<double> ghostBottom) const;
  void cover(const Run& run, OutlinePoint upper, OutlinePoint lower, long y, long columns);

  std::vector<Run> m_runs;
  std::vector<Coverage> m_row;
  std::vector<std::size_t>
      m_slots;  // by column: where in m_row its pixel is, counted from 1; 0: it is not there
};

}  // namespace ei4
