#include "image/paint_interpolate.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "image/paint_sampled.h"
#include "image/pixel.h"

namespace {

constexpr std::int64_t kLargestDenominator = 4095;  // keeps the weighted sums exact in a double
constexpr double kWholeEnough = 0.01;

/// The source pixels before and at one destination pixel along an axis, with their shares of the blend.
struct Tap {
  std::int64_t before, at;
  double weightBefore, weightAt;
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
    const Tap tap{std::clamp<std::int64_t>(m_position - 1, 0, m_last), std::min(m_position, m_last),
                  static_cast<double>(m_phase), static_cast<double>(m_denominator - m_phase)};
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

template <class Source>
void blendRow(const Source* above, const Source* below, const Tap& row, const std::vector<Tap>& columns,
              double divisor, Source* values) {
  using Component = typename Source::Component;
  const auto* upper = reinterpret_cast<const Component*>(above);
  const auto* lower = reinterpret_cast<const Component*>(below);
  auto* out = reinterpret_cast<Component*>(values);
  for (const Tap& column : columns) {
    const Component* upperBefore = upper + column.before * Source::kComponents;
    const Component* upperAt = upper + column.at * Source::kComponents;
    const Component* lowerBefore = lower + column.before * Source::kComponents;
    const Component* lowerAt = lower + column.at * Source::kComponents;
    for (int c = 0; c < Source::kComponents; ++c) {
      const double sum = upperBefore[c] * row.weightBefore * column.weightBefore +
                         upperAt[c] * row.weightBefore * column.weightAt +
                         lowerBefore[c] * row.weightAt * column.weightBefore +
                         lowerAt[c] * row.weightAt * column.weightAt;
      *out++ = static_cast<Component>(sum / divisor);
    }
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
  std::vector<Source> values(columns.size());
  const double divisor = static_cast<double>(across.denominator) * static_cast<double>(down.denominator);
  for (int i = 0; i < g.nDstRows; ++i) {
    const Tap row = rowWalk.Next();
    blendRow(job.source + row.before * size.cx, job.source + row.at * size.cx, row, columns, divisor,
             values.data());
    job.sink.Store(i, values.data());
  }
}

template void PaintInterpolated<CPixelM08>(const PaintJob<CPixelM08>&);
template void PaintInterpolated<CPixelM16>(const PaintJob<CPixelM16>&);
template void PaintInterpolated<CPixelC08>(const PaintJob<CPixelC08>&);
