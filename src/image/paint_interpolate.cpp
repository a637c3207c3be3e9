#include "image/paint_interpolate.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "image/column_blend.h"
#include "image/paint_kernels.h"
#include "image/paint_sampled.h"
#include "image/pixel.h"

namespace {

constexpr std::int64_t kLargestDenominator = 4095;  // keeps the weighted sums exact in a double
constexpr double kWholeEnough = 0.01;

/// The source pixels before and at one destination pixel along an axis, with their shares of the blend.
struct Tap {
  std::int64_t before, at;  ///< the same pixel at an edge, else neighbours
  std::int64_t weightBefore, weightAt;
};

/// Runs a phase down along one axis; the phase is the weight of the earlier of two source pixels.
class TapWalk {
 public:
  TapWalk(std::int64_t denominator, std::int64_t step, int firstDisplayed, int firstSource, long sourceSize)
      : m_denominator(denominator),
        m_step(step),
        m_phase(denominator / 2 - (firstDisplayed * step) % denominator),
        m_position(firstSource),
        m_last(sourceSize - 1) {
    if (m_phase < 0) Advance();
  }

  Tap Next() {
    const Tap tap{std::clamp<std::int64_t>(m_position - 1, 0, m_last), std::min(m_position, m_last), m_phase,
                  m_denominator - m_phase};
    m_phase -= m_step;
    if (m_phase < 1) Advance();
    return tap;
  }

 private:
  void Advance() {
    m_phase += m_denominator;
    ++m_position;
  }

  std::int64_t m_denominator, m_step, m_phase, m_position, m_last;
};

struct Scale {
  std::int64_t denominator, step;
};

Scale halvedScale(std::int64_t displayed, std::int64_t source) {
  Scale scale{displayed, source};
  while (scale.denominator > kLargestDenominator) {
    scale.denominator /= 2;
    scale.step /= 2;
  }
  return scale;
}

Samples followingSamples(int first, int count, long size) {
  Samples samples(static_cast<std::size_t>(count));
  std::int64_t position = first;
  for (int& sample : samples) sample = static_cast<int>(std::min<std::int64_t>(position++, size - 1));
  return samples;
}

/// The blend as it is defined, one pixel after another and in this order, as doubles may have to round.
template <class Source>
void blendInOrder(const Source* above, const Source* below, const Tap& row, const std::vector<Tap>& columns,
                  double divisor, Source* values) {
  using Component = typename Source::Component;
  const auto* upper = reinterpret_cast<const Component*>(above);
  const auto* lower = reinterpret_cast<const Component*>(below);
  auto* out = reinterpret_cast<Component*>(values);
  const auto rowBefore = static_cast<double>(row.weightBefore);
  const auto rowAt = static_cast<double>(row.weightAt);
  for (const Tap& column : columns) {
    const auto columnBefore = static_cast<double>(column.weightBefore);
    const auto columnAt = static_cast<double>(column.weightAt);
    const std::int64_t before = column.before * Source::kComponents;
    const std::int64_t at = column.at * Source::kComponents;
    for (int c = 0; c < Source::kComponents; ++c) {
      const double sum = upper[before + c] * rowBefore * columnBefore + upper[at + c] * rowBefore * columnAt +
                         lower[before + c] * rowAt * columnBefore + lower[at + c] * rowAt * columnAt;
      *out++ = static_cast<Component>(sum / divisor);
    }
  }
}

/// Denominators whose sums a double may have to round.
template <class Source>
void paintInOrder(const PaintJob<Source>& job, TapWalk& rows, const std::vector<Tap>& columns,
                  double divisor) {
  const long width = job.sourceSize.cx;
  std::vector<Source> values(columns.size());
  for (int i = 0; i < job.geometry.nDstRows; ++i) {
    const Tap row = rows.Next();
    blendInOrder(job.source + row.before * width, job.source + row.at * width, row, columns, divisor,
                 values.data());
    job.sink.Store(i, values.data());
  }
}

/// Exact sums may be added up in any order: source rows first, then across.
template <class Source>
void paintExactly(const PaintJob<Source>& job, TapWalk& rows, const std::vector<Tap>& columns,
                  std::int64_t divisor) {
  using Component = typename Source::Component;
  constexpr int kNeighbours = 2;
  const std::int64_t width = job.sourceSize.cx;
  const std::int64_t first = columns.front().before;
  const auto count = static_cast<std::size_t>((columns.back().at + 1 - first) * Source::kComponents);
  ColumnBlend blend(kNeighbours, Source::kComponents, columns.size(), divisor);
  for (const Tap& column : columns) {
    double* weights = blend.Add(static_cast<int>(column.before - first));
    weights[0] = static_cast<double>(column.weightBefore);
    weights[column.at - column.before] += static_cast<double>(column.weightAt);
  }
  std::vector<double> sums(count + kSumsReadAhead);
  std::vector<Source> values(columns.size());
  const auto line = [&](std::int64_t row) {
    return reinterpret_cast<const Component*>(job.source + row * width + first);
  };
  for (int i = 0; i < job.geometry.nDstRows; ++i) {
    const Tap row = rows.Next();
    SumRows({line(row.before), row.weightBefore, nullptr, 0, 0, 0, line(row.at), row.weightAt}, count,
            sums.data());
    blend.Blend(sums.data(), values.data());
    job.sink.Store(i, values.data());
  }
}

}  // namespace

template <class Source>
void PaintInterpolated(const PaintJob<Source>& job) {
  const PaintGeometry& g = job.geometry;
  const CSize size = job.sourceSize;
  const int whole = static_cast<int>(g.zoom + kWholeEnough);
  const bool isWhole = std::fabs(whole - g.zoom) < kWholeEnough;
  if (isWhole && whole == 1) {
    // With a denominator of 1 every blend is one source pixel. Quirk nearly-one-copies: a picture shown a
    // little larger than it is, by less than 1 %, is copied and its last row and column repeated.
    PaintSampled(job, followingSamples(g.nSrcX0, g.nDstCols, size.cx),
                 followingSamples(g.nSrcY0, g.nDstRows, size.cy));
    return;
  }

  const Scale across = isWhole ? Scale{whole, 1} : halvedScale(job.displayedSize.cx, size.cx);
  const Scale down = isWhole ? Scale{whole, 1} : halvedScale(job.displayedSize.cy, size.cy);
  TapWalk columnWalk(across.denominator, across.step, g.nDispX0, g.nSrcX0, size.cx);
  TapWalk rowWalk(down.denominator, down.step, g.nDispY0, g.nSrcY0, size.cy);
  std::vector<Tap> columns(static_cast<std::size_t>(g.nDstCols));
  std::generate(columns.begin(), columns.end(), [&columnWalk] { return columnWalk.Next(); });
  if (across.denominator > kLargestDenominator) {  // a whole zoom: the same both ways
    const auto denominator = static_cast<double>(across.denominator);
    paintInOrder(job, rowWalk, columns, denominator * denominator);
  } else {
    paintExactly(job, rowWalk, columns, across.denominator * down.denominator);
  }
}

template void PaintInterpolated<CPixelM08>(const PaintJob<CPixelM08>&);
template void PaintInterpolated<CPixelM16>(const PaintJob<CPixelM16>&);
template void PaintInterpolated<CPixelC08>(const PaintJob<CPixelC08>&);
