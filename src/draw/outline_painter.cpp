#include "draw/outline_painter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>

#include "draw/magick_owners.h"

namespace ei4 {

namespace {

constexpr double kFull = QuantumRange;

// The library keeps the pixels of larger pictures in a file, by the limits that it usually comes with.
constexpr std::size_t kMostPixelsInMemory = 32UL << 20;
constexpr long kWorkOfARowInAFile = 50;

Quantum toQuantum(double value) {
  return static_cast<Quantum>(std::floor(std::clamp(value, 0.0, kFull) + 0.5));
}

// Opacities count the other way round here: 0 is opaque. The order of the products is the library's own: another
// one rounds some halves to the other side.
void compositeOver(const PixelPacket& colour, double amount, PixelPacket& pixel) {
  constexpr double kScale = 1.0 / kFull;
  constexpr double kLeastTotal = 1e-12;  // keeps the quotient finite
  const double opacity = kFull - amount * kFull;
  if (opacity == kFull) return;
  const double above = 1.0 - kScale * opacity;
  const double below = 1.0 - kScale * pixel.opacity;
  const double total = above + below - above * below;
  const double share = 1.0 / std::max(total, kLeastTotal);
  const auto mix = [=](Quantum over, Quantum under) {
    return toQuantum(share * (above * over + below * under * (1.0 - above)));
  };
  pixel.red = mix(colour.red, pixel.red);
  pixel.green = mix(colour.green, pixel.green);
  pixel.blue = mix(colour.blue, pixel.blue);
  pixel.opacity = toQuantum(kFull * (1.0 - total));
}

// DrawImage makes room for colours and an alpha channel before it draws, and does so for a line that is far
// outside the picture just the same.
void prepare(Image& image, const DrawInfo& info) {
  if (image.storage_class == DirectClass && image.matte != MagickFalse && image.colorspace == sRGBColorspace)
    return;
  const OwnedDrawInfo outside(CloneDrawInfo(nullptr, &info));
  CloneString(&outside->primitive, "line -9 -9 -8 -9");
  DrawImage(&image, outside.get());
}

void paint(Image& image, const DrawInfo& info, Outline& outline, long& work) {
  prepare(image, info);
  SetImageArtifact(&image, "mvg:vector-graphics", info.primitive);  // what an output of vectors holds

  const auto columns = static_cast<long>(image.columns);
  const long rowWork = image.columns * image.rows > kMostPixelsInMemory ? kWorkOfARowInAFile : 0;
  const long lastRow = std::min(outline.lastRow(), static_cast<long>(image.rows) - 1);
  for (long y = std::max(outline.firstRow(), 0L); y <= lastRow; ++y) {
    const auto& pixels = outline.row(y, columns);
    if (pixels.empty()) continue;
    work -= static_cast<long>(pixels.size()) + rowWork;
    if (work < 0) return;
    const auto [first, last] =
        std::minmax_element(pixels.begin(), pixels.end(), [](auto& a, auto& b) { return a.x < b.x; });
    const long left = first->x;
    PixelPacket* const row = GetAuthenticPixels(&image, left, y, static_cast<std::size_t>(last->x - left + 1),
                                                1, &image.exception);
    if (row == nullptr) return;
    for (const Coverage& pixel : pixels) compositeOver(info.stroke, pixel.amount, row[pixel.x - left]);
    SyncAuthenticPixels(&image, &image.exception);
  }
}

constexpr std::size_t kSampleSide = 24;
using Sample = std::array<unsigned short, 4 * kSampleSide * kSampleSide>;

// The pixels of a grey picture with some figures on it, each put there by a call of drawFigure(image, info,
// outline). Nothing when the library cannot make the picture or hand it out.
template <class DrawFigure>
std::optional<Sample> drawSample(DrawFigure drawFigure) {
  const OwnedException exception(AcquireExceptionInfo());
  const OwnedImage image(AcquireImage(nullptr));
  const OwnedDrawInfo info(CloneDrawInfo(nullptr, nullptr));
  QueryColorDatabase("#414141", &image->background_color, exception.get());
  if (SetImageExtent(image.get(), kSampleSide, kSampleSide) == MagickFalse ||
      SetImageBackgroundColor(image.get()) == MagickFalse) {
    return std::nullopt;
  }
  info->stroke_width = 1.0;
  QueryColorDatabase("none", &info->fill, exception.get());
  const auto figure = [&](const char* colour, const char* primitive, std::optional<Outline> outline) {
    QueryColorDatabase(colour, &info->stroke, exception.get());
    CloneString(&info->primitive, primitive);
    drawFigure(*image, *info, *outline);
  };
  figure("#20c0ff", "line 3 20 21 5", Outline::line(3, 20, 21, 5));
  figure("#20c0ff", "ellipse 14 12 8 7 0 360", Outline::ellipse(14, 12, 8, 7));
  // On this grey its edges come out half way between two values.
  figure("#090909", "line 4 0 4 100", Outline::line(4, 0, 4, 100));
  Sample pixels{};
  if (ExportImagePixels(image.get(), 0, 0, kSampleSide, kSampleSide, "RGBA", ShortPixel, pixels.data(),
                        exception.get()) == MagickFalse) {
    return std::nullopt;
  }
  return pixels;
}

// Both laws, of what is covered and of how it is mixed, have been steady, but are nowhere promised.
bool agreesWithLibrary() {
  const auto bare = drawSample([](Image&, const DrawInfo&, const Outline&) {});
  const auto theirs =
      drawSample([](Image& image, const DrawInfo& info, const Outline&) { DrawImage(&image, &info); });
  long enough = std::numeric_limits<long>::max();
  const auto ours = drawSample([&enough](Image& image, const DrawInfo& info, Outline& outline) {
    paint(image, info, outline, enough);
  });
  return bare && theirs && ours && *theirs != *bare && *ours == *theirs;
}

}  // namespace

bool paintOutline(Image& image, const DrawInfo& info, Outline& outline, long& work) {
  static const bool agrees = agreesWithLibrary();
  if (agrees) paint(image, info, outline, work);
  return agrees;
}

}  // namespace ei4
