#include "ei4make/frame_pixels.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace ei4::tools {

namespace {

constexpr int kMostSide = 65535;

bool isColour(ColourModel model) { return model != ColourModel::Grey && model != ColourModel::Palette; }

void checkSide(int side, const char* name) {
  if (side < 1 || side > kMostSide) {
    throw PictureError(std::string("the number of ") + name + " is not 1 to 65535");
  }
}

std::size_t pixelCount(const FrameLayout& layout) {
  return static_cast<std::size_t>(layout.width) * static_cast<std::size_t>(layout.height);
}

/// The stored values of a grey or palette frame, one by one.
class StoredSamples {
 public:
  StoredSamples(std::span<const unsigned char> frame, const FrameLayout& layout)
      : frame_(frame),
        isWide_(layout.bitsAllocated == 16),
        shift_(layout.highBit + 1 - layout.bitsStored),
        mask_((1 << layout.bitsStored) - 1),
        sign_(layout.isSigned ? 1 << (layout.bitsStored - 1) : 0) {}

  int operator[](std::size_t i) const {
    const int word = isWide_ ? frame_[2 * i] | frame_[2 * i + 1] << 8 : frame_[i];
    const int value = word >> shift_ & mask_;
    return (value ^ sign_) - sign_;
  }

 private:
  std::span<const unsigned char> frame_;
  bool isWide_;
  int shift_;
  int mask_;
  int sign_;
};

Picture greyOf(const StoredSamples& samples, const FrameLayout& layout, int atZero) {
  Picture picture{layout.width, layout.height, layout.bitsStored <= 8 ? 1 : 2, layout.bitsStored, {}};
  const std::size_t count = pixelCount(layout);
  picture.pixels.resize(count * static_cast<std::size_t>(picture.bytesPerPixel));
  for (std::size_t i = 0; i < count; ++i) {
    const auto sample = static_cast<std::uint16_t>(samples[i] - atZero);
    if (picture.bytesPerPixel == 1) {
      picture.pixels[i] = static_cast<unsigned char>(sample);
    } else {
      std::memcpy(&picture.pixels[2 * i], &sample, 2);
    }
  }
  return picture;
}

struct Triple {
  int a, b, c;
};

Triple componentsAt(std::span<const unsigned char> frame, const FrameLayout& layout, std::size_t i) {
  if (layout.model == ColourModel::YbrFull422) {  // two pixels: their luminances, then both chrominances
    const std::size_t pair = i / 2 * 4;
    return {frame[pair + i % 2], frame[pair + 2], frame[pair + 3]};
  }
  if (!layout.isPlanar) return {frame[3 * i], frame[3 * i + 1], frame[3 * i + 2]};
  const std::size_t plane = pixelCount(layout);
  return {frame[i], frame[plane + i], frame[2 * plane + i]};
}

unsigned char toByte(int value16) { return static_cast<unsigned char>(std::clamp(value16 >> 16, 0, 255)); }

/// The inverse of the standard's YBR_FULL, in 16 fractional bits, rounded to the nearest.
Triple rgbOf(Triple ybr) {
  const int y = (ybr.a << 16) + 32768;
  const int blue = ybr.b - 128;
  const int red = ybr.c - 128;
  return {toByte(y + 91881 * red), toByte(y - 22553 * blue - 46802 * red), toByte(y + 116130 * blue)};
}

}  // namespace

void checkLayout(const FrameLayout& layout) {
  checkSide(layout.height, "rows");
  checkSide(layout.width, "columns");
  const int allocated = layout.bitsAllocated;
  if (allocated != 8 && allocated != 16) {
    throw PictureError("samples have " + std::to_string(allocated) + " bits allocated: 8 and 16 are taken");
  }
  const int stored = layout.bitsStored;
  if (stored < 1 || stored > allocated || layout.highBit >= allocated || layout.highBit < stored - 1) {
    throw PictureError("the bits stored do not lie within those allocated");
  }
  if (!isColour(layout.model)) return;
  if (allocated != 8 || stored != 8) throw PictureError("colour is taken with 8 bits a component only");
  if (layout.model == ColourModel::YbrFull422 && layout.width % 2 != 0) {
    throw PictureError("YBR_FULL_422 needs an even number of columns");
  }
}

std::uint64_t frameBytes(const FrameLayout& layout) {
  const std::uint64_t pixels = pixelCount(layout);
  switch (layout.model) {
    case ColourModel::Grey:
    case ColourModel::Palette:
      return pixels * static_cast<std::uint64_t>(layout.bitsAllocated / 8);
    case ColourModel::YbrFull422:
      return pixels * 2;
    default:
      return pixels * 3;
  }
}

Picture pictureOf(std::span<const unsigned char> frame, const FrameLayout& layout, int& atZero) {
  atZero = 0;
  if (layout.model == ColourModel::Grey) {
    if (layout.isSigned) atZero = -(1 << (layout.bitsStored - 1));
    return greyOf({frame, layout}, layout, atZero);
  }
  Picture picture{layout.width, layout.height, 3, 8, {}};
  const std::size_t count = pixelCount(layout);
  picture.pixels.resize(3 * count);
  for (std::size_t i = 0; i < count; ++i) {
    Triple pixel = componentsAt(frame, layout, i);
    if (layout.model != ColourModel::Rgb) pixel = rgbOf(pixel);
    picture.pixels[3 * i] = static_cast<unsigned char>(pixel.a);
    picture.pixels[3 * i + 1] = static_cast<unsigned char>(pixel.b);
    picture.pixels[3 * i + 2] = static_cast<unsigned char>(pixel.c);
  }
  return picture;
}

Picture pictureOf(std::span<const unsigned char> frame, const FrameLayout& layout, const Palette& palette) {
  Picture picture{layout.width, layout.height, 3, 8, {}};
  const StoredSamples samples(frame, layout);
  const std::size_t count = pixelCount(layout);
  picture.pixels.resize(3 * count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto entry = static_cast<std::size_t>(std::max(0, samples[i] - palette.first));
    for (std::size_t c = 0; c < 3; ++c) {
      picture.pixels[3 * i + c] = palette.entries[c][std::min(entry, palette.entries[c].size() - 1)];
    }
  }
  return picture;
}

}  // namespace ei4::tools
