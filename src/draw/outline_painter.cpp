#include "draw/outline_painter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

#include "draw/magick_owners.h"

namespace ei4 {

namespace {

constexpr double kFull = QuantumRange;

Quantum toQuantum(double value) {
  return static_cast<Quantum>(std::floor(std::clamp(value, 0.0, kFull) + 0.5));
}

// Opacities count the other way round here: 0 is opaque.
void compositeOver(const PixelPacket& colour, double amount, PixelPacket& pixel) {
  constexpr double kScale = 1.0 / kFull;
  const double opacity = kFull - amount * kFull;
  if (opacity == kFull) return;
  const double below = pixel.opacity;
  const double total = 1.0 - kScale * kScale * opacity * below;
  const auto mix = [=](Quantum over, Quantum under) {
    return toQuantum(1.0 / total *
                     ((1.0 - kScale * opacity) * over + (1.0 - kScale * below) * under * kScale * opacity));
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

void paint(Image& image, const DrawInfo& info, Outline& outline) {
  prepare(image, info);
  SetImageArtifact(&image, "mvg:vector-graphics", info.primitive);  // what an output of vectors holds

  const auto columns = static_cast<long>(image.columns);
  const long lastRow = std::min(outline.lastRow(), static_cast<long>(image.rows) - 1);
  for (long y = std::max(outline.firstRow(), 0L); y <= lastRow; ++y) {
    const auto& pixels = outline.row(y, columns);
    if (pixels.empty()) continue;
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

// A line and an ellipse, drawn by the library and here. Both laws have been steady, but are nowhere promised.
bool agreesWithLibrary() {
  constexpr std::size_t kSide = 24;
  using Pixels = std::array<unsigned short, 3 * kSide * kSide>;
  const auto draw = [](bool byLibrary) {
    Pixels pixels{};
    const OwnedException exception(AcquireExceptionInfo());
    const OwnedImage image(AcquireImage(nullptr));
    const OwnedDrawInfo info(CloneDrawInfo(nullptr, nullptr));
    if (SetImageExtent(image.get(), kSide, kSide) == MagickFalse) return pixels;
    SetImageBackgroundColor(image.get());
    info->stroke_width = 1.0;
    QueryColorDatabase("#20c0ff", &info->stroke, exception.get());
    QueryColorDatabase("none", &info->fill, exception.get());
    const auto figure = [&](const char* primitive, std::optional<Outline> outline) {
      CloneString(&info->primitive, primitive);
      if (byLibrary) {
        DrawImage(image.get(), info.get());
      } else {
        paint(*image, *info, *outline);
      }
    };
    figure("line 3 20 21 5", Outline::line(3, 20, 21, 5));
    figure("ellipse 11 12 9 7 0 360", Outline::ellipse(11, 12, 9, 7));
    ExportImagePixels(image.get(), 0, 0, kSide, kSide, "RGB", ShortPixel, pixels.data(), exception.get());
    return pixels;
  };
  return draw(true) == draw(false);
}

}  // namespace

bool paintOutline(Image& image, const DrawInfo& info, Outline& outline) {
  static const bool agrees = agreesWithLibrary();
  if (agrees) paint(image, info, outline);
  return agrees;
}

}  // namespace ei4
