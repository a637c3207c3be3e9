#include "image/paint_average.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "image/box_walk.h"
#include "image/image_line.h"
#include "image/paint_sampled.h"
#include "image/pixel.h"

namespace {

// Sums of samples times weights stay exact, in 64-bit integers and in doubles, while
// the divisor is this small.
constexpr std::int64_t kLargestDivisor = 0x1010100;
constexpr std::int64_t kHalvedOnce = 0x2020201;

/// The whole number that a zoom is, or 0.
int wholeZoom(double zoom) {
  if (!(zoom >= 1 && zoom <= std::numeric_limits<int>::max())) return 0;
  const int whole = static_cast<int>(zoom);
  return whole == zoom ? whole : 0;
}

/// The walk of replication: a counter of `times` that started before the visible region. It starts at a
/// column of the true scale, so it can pass the source's end.
Samples replicatedSamples(int firstDisplayed, int firstSource, int count, int times, long sourceSize) {
  Samples samples(static_cast<std::size_t>(count));
  std::int64_t position = firstDisplayed % times;
  for (int& sample : samples) {
    sample = static_cast<int>(std::min<std::int64_t>(firstSource + position / times, sourceSize));
    ++position;
  }
  return samples;
}

/// Box averaging: source rows are summed up column by column first, then the sums are gathered across.
template <class Source, class Accumulator, class Sum>
class Averager {
 public:
  Averager(const PaintJob<Source>& job, BoxWalk columns, BoxWalk rows, std::int64_t divisor)
      : m_job(job),
        m_rows(rows),
        m_columnWidth(static_cast<std::uint64_t>(columns.refill)),
        m_divisor(divisor) {
    const std::int64_t available = job.sourceSize.cx - job.geometry.nSrcX0;
    std::int64_t reach = 0;
    m_spans.reserve(static_cast<std::size_t>(job.geometry.nDstCols));
    for (int i = 0; i < job.geometry.nDstCols; ++i) {
      BoxSpan span = columns.Next();
      span.CutAt(available);
      if (span.first != 0) reach = span.begin + 1;
      if (span.full != 0) reach = span.fullBegin + span.full;
      if (span.last != 0) reach = span.end + 1;
      m_spans.push_back(span);
    }
    m_reach = static_cast<int>(reach);
    m_sums.resize(static_cast<std::size_t>(reach) * Source::kComponents);
    m_values.resize(m_spans.size());
  }

  void Paint() {
    for (int row = 0; row < m_job.geometry.nDstRows; ++row) {
      BoxSpan span = m_rows.Next();
      span.CutAt(m_job.sourceSize.cy);
      SumRows(span);
      std::transform(m_spans.begin(), m_spans.end(), m_values.begin(),
                     [this](const BoxSpan& columns) { return Mean(columns); });
      m_job.sink.Store(row, m_values.data());
    }
  }

 private:
  using Component = typename Source::Component;

  const Component* Line(std::int64_t row) const {
    const Source* line =
        GetImageLine<Source>(m_job.source, m_job.sourceSize, m_job.geometry.nSrcX0, static_cast<int>(row),
                             m_reach, nullptr);  // wholly inside: no copy
    return reinterpret_cast<const Component*>(line);
  }

  /// The order does not matter to exact sums, so rows of equal weight are added
  /// plainly and weighted together.
  void SumRows(const BoxSpan& rows) {
    std::fill(m_sums.begin(), m_sums.end(), Sum{0});
    for (std::int64_t row = rows.fullBegin; row < rows.fullBegin + rows.full; ++row) {
      const Component* line = Line(row);
      for (std::size_t i = 0; i < m_sums.size(); ++i) m_sums[i] += line[i];
    }
    if (rows.full != 0) {
      for (Sum& sum : m_sums) sum *= static_cast<Sum>(m_rows.refill);
    }
    if (rows.first != 0) AddRow(rows.begin, rows.first);
    if (rows.last != 0) AddRow(rows.end, rows.last);
  }

  void AddRow(std::int64_t row, std::int64_t rowWeight) {
    const Component* line = Line(row);
    const Sum weight = static_cast<Sum>(rowWeight);
    for (std::size_t i = 0; i < m_sums.size(); ++i) m_sums[i] += weight * line[i];
  }

  Source Mean(const BoxSpan& columns) const {
    Accumulator pixel;
    Source value;
    auto* components = reinterpret_cast<Component*>(&value);
    for (int c = 0; c < Source::kComponents; ++c) {
      const auto sumOf = [this, c](std::int64_t column) -> std::uint64_t {
        return m_sums[static_cast<std::size_t>(column * Source::kComponents + c)];
      };
      std::uint64_t sum = 0;
      for (std::int64_t i = 0; i < columns.full; ++i) sum += sumOf(columns.fullBegin + i);
      sum *= m_columnWidth;
      if (columns.first != 0) sum += static_cast<std::uint64_t>(columns.first) * sumOf(columns.begin);
      if (columns.last != 0) sum += static_cast<std::uint64_t>(columns.last) * sumOf(columns.end);
      using Wide = typename Accumulator::Sum;
      pixel.sums[c] = static_cast<Wide>(sum);
      components[c] = static_cast<Component>(pixel.sums[c] / static_cast<Wide>(m_divisor));
    }
    return value;
  }

  const PaintJob<Source>& m_job;
  BoxWalk m_rows;
  std::uint64_t m_columnWidth;
  std::int64_t m_divisor;
  int m_reach;  ///< source columns needed, from nSrcX0 on
  std::vector<BoxSpan> m_spans;
  std::vector<Sum> m_sums;  ///< by source column and component
  std::vector<Source> m_values;
};

}  // namespace

template <class Source, class Accumulator>
int PaintAveraged(const PaintJob<Source>& job) {
  const PaintGeometry& g = job.geometry;
  if (const int times = wholeZoom(g.zoom); times != 0) {
    // Quirk whole-zoom-replicates: the zoom compares the sums of the sides, so this also runs when one side
    // shrinks and the other grows.
    PaintSampled(job, replicatedSamples(g.nDispX0, g.nSrcX0, g.nDstCols, times, job.sourceSize.cx),
                 replicatedSamples(g.nDispY0, g.nSrcY0, g.nDstRows, times, job.sourceSize.cy));
    return 1;
  }

  BoxWalk columns = BoxWalk::From(g.nDispX0, job.sourceSize.cx, job.displayedSize.cx, 0);
  BoxWalk rows = BoxWalk::From(g.nDispY0, job.sourceSize.cy, job.displayedSize.cy, g.nSrcY0);
  std::int64_t divisor = std::int64_t{job.sourceSize.cx} * job.sourceSize.cy;
  // Quirk halved-weights: odd numbers lose a unit, and the walk its exact scale.
  while (divisor > kLargestDivisor) {
    rows.Halve();
    if (divisor <= kHalvedOnce) {
      divisor /= 2;
      break;
    }
    columns.Halve();
    divisor /= 4;
  }
  if (columns.refill == 0 || rows.refill == 0) return 0;  // the walk would stand still for ever

  constexpr std::int64_t kLargestSample = std::numeric_limits<typename Source::Component>::max();
  if (rows.unit <= std::numeric_limits<std::uint32_t>::max() / kLargestSample) {
    Averager<Source, Accumulator, std::uint32_t>(job, columns, rows, divisor).Paint();
  } else {
    Averager<Source, Accumulator, std::uint64_t>(job, columns, rows, divisor).Paint();
  }
  return 1;
}

template int PaintAveraged<CPixelM08, CPixelDDD>(const PaintJob<CPixelM08>&);
template int PaintAveraged<CPixelM16, CPixelDDD>(const PaintJob<CPixelM16>&);
template int PaintAveraged<CPixelC08, CPixelCCC>(const PaintJob<CPixelC08>&);
