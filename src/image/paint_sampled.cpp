#include "image/paint_sampled.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>

#include "image/image_line.h"
#include "image/pixel.h"

namespace {

/// Of `count` displayed pixels from `first` on, what a counter of `displayed` units a source pixel, running
/// down by `source` units a displayed pixel, points to.
Samples nearestSamples(int first, int count, long source, long displayed) {
  Samples samples(static_cast<std::size_t>(count));
  std::int64_t position = first * std::int64_t{source};
  for (int& sample : samples) {
    sample = static_cast<int>(position / displayed);
    position += source;
  }
  return samples;
}

bool areNeighbours(const Samples& columns) {
  return std::adjacent_find(columns.begin(), columns.end(), [](int a, int b) { return b - a != 1; }) ==
         columns.end();
}

}  // namespace

template <class Source>
void PaintSampled(const PaintJob<Source>& job, const Samples& columns, const Samples& rows) {
  const int first = columns.front();
  const int span = columns.back() - first + 1;
  const bool direct = areNeighbours(columns);
  std::vector<Source> padded(static_cast<std::size_t>(span));
  std::vector<Source> gathered(direct ? 0 : columns.size());

  const Source* values = nullptr;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (row == 0 || rows[row] != rows[row - 1]) {
      const Source* line = GetImageLine(job.source, job.sourceSize, first, rows[row], span, padded.data());
      values = line;
      if (!direct) {
        std::transform(columns.begin(), columns.end(), gathered.begin(),
                       [line, first](int column) { return line[column - first]; });
        values = gathered.data();
      }
    }
    job.sink.Store(static_cast<int>(row), values);
  }
}

template <class Source>
void PaintNearest(const PaintJob<Source>& job) {
  const PaintGeometry& g = job.geometry;
  PaintSampled(job, nearestSamples(g.nDispX0, g.nDstCols, job.sourceSize.cx, job.displayedSize.cx),
               nearestSamples(g.nDispY0, g.nDstRows, job.sourceSize.cy, job.displayedSize.cy));
}

template void PaintSampled<CPixelM08>(const PaintJob<CPixelM08>&, const Samples&, const Samples&);
template void PaintSampled<CPixelM16>(const PaintJob<CPixelM16>&, const Samples&, const Samples&);
template void PaintSampled<CPixelC08>(const PaintJob<CPixelC08>&, const Samples&, const Samples&);
template void PaintNearest<CPixelM08>(const PaintJob<CPixelM08>&);
template void PaintNearest<CPixelM16>(const PaintJob<CPixelM16>&);
template void PaintNearest<CPixelC08>(const PaintJob<CPixelC08>&);
