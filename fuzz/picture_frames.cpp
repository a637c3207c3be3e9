// Uncompressed frames of DICOM files, sample by sample.
#include <algorithm>
#include <cmath>
#include <vector>

#include "check.h"
#include "ei4make/frame_pixels.h"
#include "picture_checks.h"

namespace ei4::fuzz {

namespace {

using tools::ColourModel;
using tools::FrameLayout;
using tools::Palette;
using tools::Picture;
using tools::PictureError;
using Bytes = std::span<const std::uint8_t>;

/// The value that a sample's stored bits have.
int storedValue(Bytes frame, const FrameLayout& layout, std::size_t i) {
  const int word = layout.bitsAllocated == 16 ? frame[2 * i] + 256 * frame[2 * i + 1] : frame[i];
  const int values = 1 << layout.bitsStored;
  const int value = word / (1 << (layout.highBit - layout.bitsStored + 1)) % values;
  return layout.isSigned && value >= values / 2 ? value - values : value;
}

/// A component of a colour frame as it is stored.
int component(Bytes frame, const FrameLayout& layout, std::size_t pixel, std::size_t c) {
  const auto pixels = static_cast<std::size_t>(layout.width) * static_cast<std::size_t>(layout.height);
  if (layout.model == ColourModel::YbrFull422) {
    const Bytes pair = frame.subspan(pixel / 2 * 4, 4);
    return c == 0 ? pair[pixel % 2] : pair[c + 1];
  }
  return frame[layout.isPlanar ? c * pixels + pixel : 3 * pixel + c];
}

double plainColour(Bytes frame, const FrameLayout& layout, std::size_t pixel, std::size_t c) {
  if (layout.model == ColourModel::Rgb) return component(frame, layout, pixel, c);
  constexpr double kOfBlue[] = {0, -0.344136, 1.772};
  constexpr double kOfRed[] = {1.402, -0.714136, 0};
  const double value = component(frame, layout, pixel, 0) +
                       kOfBlue[c] * (component(frame, layout, pixel, 1) - 128) +
                       kOfRed[c] * (component(frame, layout, pixel, 2) - 128);
  return std::clamp(value, 0.0, 255.0);
}

void compareGrey(Bytes frame, const FrameLayout& layout, const Picture& picture, int atZero) {
  require(
      picture.bytesPerPixel == (layout.bitsStored > 8 ? 2 : 1) && picture.bitsPerPixel == layout.bitsStored,
      "a frame keeps its stored bits");
  require(atZero == (layout.isSigned ? -(1 << (layout.bitsStored - 1)) : 0), "the least value becomes 0");
  const std::size_t count = picture.pixels.size() / static_cast<std::size_t>(picture.bytesPerPixel);
  for (std::size_t i = 0; i < count; ++i) {
    require(sampleAt(picture, i) + atZero == storedValue(frame, layout, i), "a frame keeps its values");
  }
}

void compareColour(Bytes frame, const FrameLayout& layout, const Picture& picture) {
  constexpr double kRounding = 0.51;
  require(picture.bytesPerPixel == 3, "colour stays colour");
  for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
    require(std::fabs(picture.pixels[i] - plainColour(frame, layout, i / 3, i % 3)) <= kRounding,
            "colours are those of the standard's formulas");
  }
}

void comparePalette(Bytes frame, const FrameLayout& layout, const Palette& palette, const Picture& picture) {
  require(picture.bytesPerPixel == 3, "palettes give colour");
  for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
    const auto& entries = palette.entries[i % 3];
    const int entry = storedValue(frame, layout, i / 3) - palette.first;
    require(picture.pixels[i] ==
                entries[static_cast<std::size_t>(std::clamp(entry, 0, static_cast<int>(entries.size()) - 1))],
            "colours are those of the palette");
  }
}

}  // namespace

void tryFramePixels(Input input, bool hasPalette) {
  FrameLayout layout;
  layout.width = input.u16();
  layout.height = input.u16();
  constexpr ColourModel kModels[] = {ColourModel::Grey, ColourModel::Rgb, ColourModel::YbrFull,
                                     ColourModel::YbrFull422};
  layout.model = hasPalette ? (input.u8(), ColourModel::Palette) : kModels[input.u8() % 4];
  layout.bitsAllocated = input.u8();
  layout.bitsStored = input.i8();
  layout.highBit = input.i8();
  const int flags = input.u8();
  layout.isSigned = (flags & 1) != 0;
  layout.isPlanar = (flags & 2) != 0;
  try {
    checkLayout(layout);
  } catch (const PictureError&) {
    return;
  }
  Palette palette;
  if (hasPalette) {
    palette.first = layout.isSigned ? input.i16() : input.u16();
    for (auto& entries : palette.entries) {
      entries.resize(std::max<std::size_t>(1, input.u8()));
      for (auto& entry : entries) entry = input.u8();
    }
  }
  const std::uint64_t size = frameBytes(layout);
  if (size > input.rest().size()) return;
  const std::vector<std::uint8_t> frame(input.rest().begin(),
                                        input.rest().begin() + static_cast<std::ptrdiff_t>(size));
  int atZero = 0;
  const Picture picture = hasPalette ? pictureOf(frame, layout, palette) : pictureOf(frame, layout, atZero);
  require(picture.width == layout.width && picture.height == layout.height, "a frame keeps its sides");
  checkPicture(picture);
  if (hasPalette) {
    comparePalette(frame, layout, palette, picture);
  } else if (layout.model == ColourModel::Grey) {
    compareGrey(frame, layout, picture, atZero);
  } else {
    compareColour(frame, layout, picture);
  }
}

}  // namespace ei4::fuzz
