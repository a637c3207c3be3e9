// From the bytes of one uncompressed frame to a picture.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "ei4make/source.h"

namespace ei4::tools {

enum class ColourModel { Grey, Palette, Rgb, YbrFull, YbrFull422 };

/// How the samples of a frame lie and what they mean.
struct FrameLayout {
  int width = 0;
  int height = 0;
  ColourModel model = ColourModel::Grey;
  int bitsAllocated = 8;
  int bitsStored = 8;
  int highBit = 7;
  bool isSigned = false;
  bool isPlanar = false;  ///< all red samples first, then all green ones, then all blue ones
};

/// Three colour tables. A stored value below `first` takes the first entry, one behind the end the last.
struct Palette {
  int first = 0;
  std::array<std::vector<unsigned char>, 3> entries;  ///< red, green, blue; at least one each
};

/// Throws PictureError unless sides are 1..65535, 8 or 16 bits allocated hold the stored ones, and colour has 8.
void checkLayout(const FrameLayout& layout);

/// Bytes of a frame. The layout is a checked one; likewise below.
std::uint64_t frameBytes(const FrameLayout& layout);

/// Makes the picture of a frame of exactly frameBytes(), 16-bit samples low byte first. Bits of a sample outside the
/// stored ones are left out. Signed grey is shifted up to begin at 0, and `atZero` gets the shift. The model is any
/// but Palette.
Picture pictureOf(std::span<const unsigned char> frame, const FrameLayout& layout, int& atZero);

/// The same for palettes, as colour.
Picture pictureOf(std::span<const unsigned char> frame, const FrameLayout& layout, const Palette& palette);

}  // namespace ei4::tools
