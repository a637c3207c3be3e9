// Runs the painter on plain pictures, the destination boxed in by guard bytes.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "image/paint_image.h"
#include "reference_painter.h"

namespace ei4::test {

/// The picture's pixels as an image buffer holds them.
template <class Pixel>
std::vector<Pixel> pixelsOf(const Picture& picture) {
  std::vector<Pixel> pixels(static_cast<std::size_t>(picture.cx * picture.cy));
  auto* components = reinterpret_cast<typename Pixel::Component*>(pixels.data());
  for (std::size_t i = 0; i < pixels.size() * Pixel::kComponents; ++i) {
    components[i] = static_cast<typename Pixel::Component>(picture.samples[i % picture.samples.size()]);
  }
  return pixels;
}

/// The table as the painter wants it: bytes, or 16-bit entries for a 16-bit destination. Exactly as long as
/// needed, so that a sanitizer sees a read behind it.
inline std::vector<std::uint8_t> tableBytes(const PaintRequest& request) {
  const std::vector<std::uint16_t>& entries = request.table;
  if (request.format != COLOR_TYPE_M16) {
    std::vector<std::uint8_t> bytes(entries.size());
    std::transform(entries.begin(), entries.end(), bytes.begin(),
                   [](std::uint16_t entry) { return static_cast<std::uint8_t>(entry); });
    return bytes;
  }
  std::vector<std::uint8_t> bytes(entries.size() * 2);
  if (!bytes.empty()) std::memcpy(bytes.data(), entries.data(), bytes.size());
  return bytes;
}

inline constexpr std::uint8_t kUnwritten = 0xA5;

struct Painted {
  int result;
  std::vector<std::uint8_t> bytes;  // as ReferencePainter::paint gives them
};

template <class Source, class Accumulator, class Destination>
Painted paintInstance(const Picture& source, const PaintRequest& r) {
  constexpr std::size_t kGuard = 64;
  constexpr std::size_t kLarger = std::max(sizeof(Source), sizeof(Destination));
  const std::size_t pixels = static_cast<std::size_t>(r.cx * r.cy);
  std::vector<std::uint8_t> buffer(pixels * kLarger + 2 * kGuard, kUnwritten);
  const std::vector<Source> from = pixelsOf<Source>(source);
  const std::vector<std::uint8_t> table = tableBytes(r);
  CRect clip;
  clip.SetRect(CPoint(tagPOINT{r.clipL, r.clipT}), CPoint(tagPOINT{r.clipR, r.clipB}));
  Painted painted{};
  painted.result = PaintImage_<Source, Accumulator, Destination>(
      from.data(), tagSIZE{source.cx, source.cy}, reinterpret_cast<Destination*>(buffer.data() + kGuard),
      tagSIZE{r.cx, r.cy}, tagPOINT{r.offsetX, r.offsetY}, tagSIZE{r.shownX, r.shownY}, clip, r.orientation,
      0, table.empty() ? nullptr : table.data(), r.background, r.mode);
  for (std::size_t i = 0; i < kGuard; ++i) {
    EXPECT_EQ(buffer[i], kUnwritten) << "written in front of the destination";
    EXPECT_EQ(buffer[buffer.size() - 1 - i], kUnwritten) << "written behind the destination";
  }
  painted.bytes.assign(buffer.begin() + kGuard, buffer.end() - kGuard);
  return painted;
}

template <class Source, class Accumulator>
Painted paintFrom(const Picture& source, const PaintRequest& request) {
  switch (request.format) {
    case COLOR_TYPE_M08:
      return paintInstance<Source, Accumulator, CPixelM08>(source, request);
    case COLOR_TYPE_M16:
      return paintInstance<Source, Accumulator, CPixelM16>(source, request);
    case COLOR_TYPE_C08:
      break;
  }
  return paintInstance<Source, Accumulator, CPixelC08>(source, request);
}

/// Paints with the instance for the two formats.
inline Painted paint(const Picture& source, const PaintRequest& request) {
  switch (source.format) {
    case COLOR_TYPE_M08:
      return paintFrom<CPixelM08, CPixelDDD>(source, request);
    case COLOR_TYPE_M16:
      return paintFrom<CPixelM16, CPixelDDD>(source, request);
    case COLOR_TYPE_C08:
      break;
  }
  return paintFrom<CPixelC08, CPixelCCC>(source, request);
}

/// The whole source shown at cx x cy, filling a destination of the source's format.
inline PaintRequest filling(const Picture& source, long cx, long cy, int mode) {
  return {source.format, cx, cy, 0, 0, cx, cy, 0, 0, cx, cy, ORIENTATION_AS_STORED, 0, mode, {}};
}

inline Picture grey8(long cx, long cy, std::vector<unsigned> samples) {
  return {COLOR_TYPE_M08, cx, cy, std::move(samples)};
}
inline Picture grey16(long cx, long cy, std::vector<unsigned> samples) {
  return {COLOR_TYPE_M16, cx, cy, std::move(samples)};
}

/// The painted values of a 16-bit destination.
inline std::vector<unsigned> words(const Painted& painted) {
  std::vector<std::uint16_t> values(painted.bytes.size() / 2);
  if (!values.empty()) std::memcpy(values.data(), painted.bytes.data(), painted.bytes.size());
  return {values.begin(), values.end()};
}

inline std::string describe(const Picture& s, const PaintRequest& r) {
  return testing::PrintToString(std::vector<long>{s.cx, s.cy, r.cx, r.cy, r.offsetX, r.offsetY, r.shownX,
                                                  r.shownY, r.clipL, r.clipT, r.clipR, r.clipB, r.orientation,
                                                  r.mode});
}

inline std::vector<unsigned> bytes(const Painted& painted) {
  return {painted.bytes.begin(), painted.bytes.end()};
}

}  // namespace ei4::test
