// How much a report may hold. A real one has fewer than 100 annotations, labels below 200 characters, outlines of a
// few thousand points and some kilobytes. What goes beyond a limit is no report: it is refused as a whole, since a
// picture that silently lacks some of its measurements would mislead whoever reads it.
#pragma once

#include <cstddef>
#include <limits>

namespace ei4 {

inline constexpr long kMostReportBytes = 16L << 20;  ///< of its file
inline constexpr int kMostAnnotations = 1000;  ///< kept ones, calibrations included; 0.5 ms each with labels

/// Of one label, decoded: as much as the drawing context draws of a text.
inline constexpr int kMostLabelBytes = 4000;
/// Of all labels, shown or not. Each byte takes 25 us, being drawn twice.
inline constexpr long kMostBytesOfLabels = 1L << 16;

inline constexpr long kMostVertices = 50'000;  ///< of all outlines; 40 us each in outlines of many

/// What outlines may read: twice the report and so many bytes. Their counts can make each of them read the lines of
/// all others, which would take time by the square of the report's length.
inline constexpr long kSparedOutlineBytes = 1L << 16;

/// What drawing a report may take, in the drawing context's units: some four seconds, and for each pixel of the
/// picture less than half of what it costs to write it as a PNG. How large figures become on the picture shows only
/// then. A hundred ovals of 1000 pixels across take a quarter of the first.
inline constexpr long kMostDrawingWork = 40'000'000;
inline constexpr long kDrawingWorkOfAPixel = 2;

/// What a report that is being read has left of these.
struct ReportAllowance {
  ReportAllowance() = default;
  /// length  of the report's text, bytes
  explicit ReportAllowance(std::size_t length)
      : outlineBytes(2 * static_cast<long>(length) + kSparedOutlineBytes) {}

  int annotations = kMostAnnotations;
  long labelBytes = kMostBytesOfLabels;
  long vertices = kMostVertices;
  long outlineBytes = std::numeric_limits<long>::max();  ///< that outlines may still read

  bool IsExceeded() const { return annotations < 0 || labelBytes < 0 || vertices < 0 || outlineBytes <= 0; }
};

}  // namespace ei4
