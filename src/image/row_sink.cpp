#include "image/row_sink.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

#include "image/pixel.h"

namespace {

unsigned grey(CPixelM08 pixel) { return pixel.value; }
unsigned grey(CPixelM16 pixel) { return pixel.value; }
unsigned grey(CPixelC08 pixel) { return (pixel.red + 2u * pixel.green + pixel.blue) >> 2; }

template <class Destination>
Destination fromGrey(unsigned value) {
  const auto component = static_cast<typename Destination::Component>(value);
  if constexpr (Destination::kComponents == 3) {
    return {component, component, component};
  } else {
    return {component};
  }
}

template <class Source, class Destination>
struct ThroughTable {
  const typename Destination::Component* table;

  Destination operator()(Source pixel) const {
    if constexpr (Source::kComponents == 3 && Destination::kComponents == 3) {
      return {table[pixel.red], table[pixel.green], table[pixel.blue]};
    } else {
      return fromGrey<Destination>(table[grey(pixel)]);
    }
  }
};

template <class Source, class Destination>
struct WithoutTable {
  Destination operator()(Source pixel) const {
    if constexpr (std::is_same_v<Source, Destination>) {
      return pixel;
    } else {
      return fromGrey<Destination>(grey(pixel));
    }
  }
};

/// Rows to rows, forwards or backwards.
template <class Source, class Destination, class Convert>
class ConvertingSink final : public RowSink<Source> {
 public:
  ConvertingSink(Destination* destination, const DestinationWalk& walk, Convert convert)
      : m_destination(destination), m_walk(walk), m_convert(convert) {}

  void Store(int row, const Source* values) const override {
    Destination* out = m_destination + m_walk.start + row * m_walk.rowAdvance;
    const std::ptrdiff_t columns = m_walk.columns;
    if (m_walk.stepX == 1) {
      std::transform(values, values + columns, out, m_convert);
    } else {
      const Convert convert = m_convert;
      for (std::ptrdiff_t i = 0; i < columns; ++i) out[-i] = convert(values[i]);
    }
  }

 private:
  Destination* m_destination;
  DestinationWalk m_walk;
  Convert m_convert;
};

/// Rows to columns. A column's pixels lie a destination row apart each, so that every store would
/// meet another cache line; some rows are collected and stored together, pixels side by side.
template <class Source, class Destination, class Convert>
class TurningSink final : public RowSink<Source> {
 public:
  TurningSink(Destination* destination, const DestinationWalk& walk, Convert convert)
      : m_destination(destination),
        m_walk(walk),
        m_convert(convert),
        m_collected(static_cast<std::size_t>(walk.columns) *
                    static_cast<std::size_t>(std::min(kRows, walk.rows))) {}

  void Store(int row, const Source* values) const override {
    const int place = row % kRows;
    std::transform(values, values + m_walk.columns,
                   m_collected.begin() + std::ptrdiff_t{place} * m_walk.columns, m_convert);
    if (place == kRows - 1 || row == m_walk.rows - 1) StoreCollected(row - place, place + 1);
  }

 private:
  static constexpr int kRows = 16;

  /// Of the collected rows, of which the first is `row`.
  void StoreCollected(int row, int count) const {
    Destination* out = m_destination + m_walk.start + row * m_walk.rowAdvance;
    const std::ptrdiff_t columns = m_walk.columns;
    const Destination* in = m_collected.data();
    if (count == kRows) {
      // rowAdvance is 1 or -1
      if (m_walk.rowAdvance < 0) out -= kRows - 1;
      for (std::ptrdiff_t i = 0; i < columns; ++i) {
        for (int r = 0; r < kRows; ++r)
          out[r] = in[(m_walk.rowAdvance < 0 ? kRows - 1 - r : r) * columns + i];
        out += m_walk.stepX;
      }
      return;
    }
    for (std::ptrdiff_t i = 0; i < columns; ++i) {
      for (int r = 0; r < count; ++r) out[r * m_walk.rowAdvance] = in[r * columns + i];
      out += m_walk.stepX;
    }
  }

  Destination* m_destination;
  DestinationWalk m_walk;
  Convert m_convert;
  mutable std::vector<Destination> m_collected;
};

/// The sink for a walk whose neighbours are one pixel apart in one direction or the other.
template <class Source, class Destination, class Convert>
std::unique_ptr<RowSink<Source>> makeConvertingSink(Destination* destination, const DestinationWalk& walk,
                                                    Convert convert) {
  if (walk.stepX == 1 || walk.stepX == -1) {
    return std::make_unique<ConvertingSink<Source, Destination, Convert>>(destination, walk, convert);
  }
  return std::make_unique<TurningSink<Source, Destination, Convert>>(destination, walk, convert);
}

/// Quirk no-table-keeps-source-pixels. The stored pixels need not be aligned.
template <class Source, class Destination>
class RawSink final : public RowSink<Source> {
 public:
  RawSink(Destination* destination, const DestinationWalk& walk)
      : m_destination(reinterpret_cast<unsigned char*>(destination)), m_walk(walk) {}

  void Store(int row, const Source* values) const override {
    constexpr std::ptrdiff_t kBytes = sizeof(Source);
    const std::ptrdiff_t start =
        m_walk.start * std::ptrdiff_t{sizeof(Destination)} + row * m_walk.rowAdvance * kBytes;
    for (std::ptrdiff_t i = 0; i < m_walk.columns; ++i) {
      const std::ptrdiff_t at = start + i * m_walk.stepX * kBytes;
      if (at >= 0) std::memcpy(m_destination + at, &values[i], sizeof(Source));
    }
  }

 private:
  unsigned char* m_destination;
  DestinationWalk m_walk;
};

}  // namespace

template <class Source, class Destination>
std::unique_ptr<RowSink<Source>> MakeRowSink(Destination* destination, const DestinationWalk& walk,
                                             const void* table) {
  if (table != nullptr) {
    using Convert = ThroughTable<Source, Destination>;
    const Convert convert{static_cast<const typename Destination::Component*>(table)};
    return makeConvertingSink<Source>(destination, walk, convert);
  }
  if constexpr (sizeof(Source) > sizeof(Destination) && std::is_same_v<Destination, CPixelM08>) {
    return std::make_unique<RawSink<Source, Destination>>(destination, walk);
  } else {
    using Convert = WithoutTable<Source, Destination>;
    return makeConvertingSink<Source>(destination, walk, Convert{});
  }
}

template <class Source, class Destination>
using Make = std::unique_ptr<RowSink<Source>>(Destination*, const DestinationWalk&, const void*);
template Make<CPixelM08, CPixelM08> MakeRowSink<CPixelM08, CPixelM08>;
template Make<CPixelM08, CPixelM16> MakeRowSink<CPixelM08, CPixelM16>;
template Make<CPixelM08, CPixelC08> MakeRowSink<CPixelM08, CPixelC08>;
template Make<CPixelM16, CPixelM08> MakeRowSink<CPixelM16, CPixelM08>;
template Make<CPixelM16, CPixelM16> MakeRowSink<CPixelM16, CPixelM16>;
template Make<CPixelM16, CPixelC08> MakeRowSink<CPixelM16, CPixelC08>;
template Make<CPixelC08, CPixelM08> MakeRowSink<CPixelC08, CPixelM08>;
template Make<CPixelC08, CPixelM16> MakeRowSink<CPixelC08, CPixelM16>;
template Make<CPixelC08, CPixelC08> MakeRowSink<CPixelC08, CPixelC08>;
