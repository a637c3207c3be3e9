#include "image/paint_average.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "image/box_walk.h"
#include "image/column_blend.h"
#include "image/paint_kernels.h"
#include "image/paint_sampled.h"
#include "image/pixel.h"

namespace {

// Sums of samples times weights stay exact in doubles while the divisor is this small.
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
template <class Source>
class Averager {
 public:
  Averager(const PaintJob<Source>& job, BoxWalk columns, BoxWalk rows, std::int64_t divisor)
      : m_job(job), m_rows(rows), m_columnWidth(static_cast<double>(columns.refill)), m_divisor(divisor) {
    const std::int64_t available = job.sourceSize.cx - job.geometry.nSrcX0;
    m_spans.reserve(static_cast<std::size_t>(job.geometry.nDstCols));
    std::int64_t widest = 1;
    std::int64_t reach = 0;
    for (int i = 0; i < job.geometry.nDstCols; ++i) {
      BoxSpan span = columns.Next();
      span.CutAt(available);
      if (!span.IsEmpty()) reach = span.Last();
      widest = std::max(widest, span.Last() - span.First());
      m_spans.push_back(span);
    }
    m_columns = static_cast<std::size_t>(reach);
    m_sums.resize(m_columns * Source::kComponents + kSumsReadAhead);
    m_values.resize(m_spans.size());
    if (widest <= WeightedColumns::kMostTaps) MakeBlend(static_cast<int>(widest));
  }

  void Paint() {
    for (int row = 0; row < m_job.geometry.nDstRows; ++row) {
      BoxSpan span = m_rows.Next();
      span.CutAt(m_job.sourceSize.cy);
      if (span.IsEmpty()) {
        std::fill(m_sums.begin(), m_sums.end(), 0.0);
      } else {
        SumRows({Line(span.begin), span.first, Line(span.fullBegin), Stride(), span.full, m_rows.refill,
                 Line(span.end), span.last},
                m_columns * Source::kComponents, m_sums.data());
      }
      if (m_blend) {
        m_blend->Blend(m_sums.data(), m_values.data());
      } else {
        std::transform(m_spans.begin(), m_spans.end(), m_values.begin(),
                       [this](const BoxSpan& columns) { return Mean(columns); });
      }
      m_job.sink.Store(row, m_values.data());
    }
  }

 private:
  using Component = typename Source::Component;

  /// Null for rows outside, which have no weight.
  const Component* Line(std::int64_t row) const {
    if (row >= m_job.sourceSize.cy) return nullptr;
    const Source* line = m_job.source + row * m_job.sourceSize.cx + m_job.geometry.nSrcX0;
    return reinterpret_cast<const Component*>(line);
  }

  std::ptrdiff_t Stride() const { return m_job.sourceSize.cx * Source::kComponents; }

  /// With few columns to a pixel their weights are written out.
  void MakeBlend(int most) {
    m_blend.emplace(most, Source::kComponents, m_spans.size(), m_divisor);
    for (const BoxSpan& span : m_spans) {
      if (span.IsEmpty()) {
        m_blend->Add(0);
        continue;
      }
      double* weights = m_blend->Add(static_cast<int>(span.First()));
      const auto weigh = [&](std::int64_t column, double weight) {
        weights[column - span.First()] += weight;
      };
      if (span.first != 0) weigh(span.begin, static_cast<double>(span.first));
      for (std::int64_t i = 0; i < span.full; ++i) weigh(span.fullBegin + i, m_columnWidth);
      if (span.last != 0) weigh(span.end, static_cast<double>(span.last));
    }
  }

  Source Mean(const BoxSpan& columns) const {
    const auto divide = TruncatingDivision::By(m_divisor);
    Source value;
    auto* components = reinterpret_cast<Component*>(&value);
    for (int c = 0; c < Source::kComponents; ++c) {
      const auto sumOf = [this, c](std::int64_t column) {
        return m_sums[static_cast<std::size_t>(column * Source::kComponents + c)];
      };
      double sum = 0;
      for (std::int64_t i = 0; i < columns.full; ++i) sum += sumOf(columns.fullBegin + i);
      sum *= m_columnWidth;
      if (columns.first != 0) sum += static_cast<double>(columns.first) * sumOf(columns.begin);
      if (columns.last != 0) sum += static_cast<double>(columns.last) * sumOf(columns.end);
      components[c] = static_cast<Component>(divide(sum));
    }
    return value;
  }

  const PaintJob<Source>& m_job;
  BoxWalk m_rows;
  double m_columnWidth;
  std::int64_t m_divisor;
  std::size_t m_columns;  ///< source columns needed, from nSrcX0 on
  std::vector<BoxSpan> m_spans;
  std::optional<ColumnBlend> m_blend;
  std::vector<double> m_sums;  ///< by source column and component
  std::vector<Source> m_values;
};

}  // namespace

template <class Source>
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

  Averager<Source>(job, columns, rows, divisor).Paint();
  return 1;
}

template int PaintAveraged<CPixelM08>(const PaintJob<CPixelM08>&);
template int PaintAveraged<CPixelM16>(const PaintJob<CPixelM16>&);
template int PaintAveraged<CPixelC08>(const PaintJob<CPixelC08>&);
