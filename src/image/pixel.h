// The three pixel formats of images, and the two wide sums that averaging collects them in.
#pragma once

#include <cstdint>

#include "image/color_type.h"

/// Colour, as the drawing library's map "RGB" wants it.
struct CPixelC08 {
  using Component = std::uint8_t;
  static constexpr int kComponents = 3;
  static constexpr COLOR_TYPE kColorType = COLOR_TYPE_C08;
  std::uint8_t red;
  std::uint8_t green;
  std::uint8_t blue;
};

/// Grey of 8 bits.
struct CPixelM08 {
  using Component = std::uint8_t;
  static constexpr int kComponents = 1;
  static constexpr COLOR_TYPE kColorType = COLOR_TYPE_M08;
  std::uint8_t value;
};

/// Grey of 16 bits in host byte order.
struct CPixelM16 {
  using Component = std::uint16_t;
  static constexpr int kComponents = 1;
  static constexpr COLOR_TYPE kColorType = COLOR_TYPE_M16;
  std::uint16_t value;
};

/// The sum behind one averaged grey pixel.
struct CPixelDDD {
  using Sum = double;
  Sum sums[1];
};

/// The three sums behind one averaged colour pixel: red, green, blue.
struct CPixelCCC {
  using Sum = std::uint64_t;
  Sum sums[3];
};

// The buffers of images are handed out as they are, so the layouts are part of the contract.
static_assert(sizeof(CPixelC08) == 3 && sizeof(CPixelM08) == 1 && sizeof(CPixelM16) == 2);
