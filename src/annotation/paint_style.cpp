#include "annotation/paint_style.h"

#include "annotation/display_geometry.h"

namespace {

constexpr unsigned int kBlack = 0;
constexpr unsigned int kWhite = 0xFFFFFF;
constexpr unsigned int kDarkBelow = 384;
constexpr unsigned int kVeryLightAbove = 831;

unsigned int channel(unsigned int color, unsigned int shift) { return color >> shift & 0xFF; }

unsigned int brightness(unsigned int color) {
  return channel(color, 16) + 2 * channel(color, 8) + channel(color, 0);
}

}  // namespace

int GetLineWidth(int w, double scale) {
  if (scale == 1.0) return w;
  // Quirk negative-lengths-shrink: the half is added to negative lengths as well, so they lose a pixel.
  const int scaled = Truncated(w * scale + 0.5);
  return scaled == 0 && w != 0 ? 1 : scaled;
}

unsigned int GetDarkerColor(unsigned int color) { return color >> 1 & 0x7F7F7F; }

unsigned int GetLighterColor(unsigned int color) {
  unsigned int lighter = 0;
  for (const unsigned int shift : {0U, 8U, 16U}) {
    const unsigned int value = channel(color, shift);
    lighter |= (value + (255 - value) / 2) << shift;
  }
  return lighter;
}

unsigned int GetBorderColor(unsigned int color) {
  return brightness(color) > kVeryLightAbove ? GetDarkerColor(color) : GetLighterColor(color);
}

unsigned int GetShadowColor(unsigned int color) { return brightness(color) < kDarkBelow ? kWhite : kBlack; }

unsigned int GetBrightColor(unsigned int color) { return brightness(color) < kDarkBelow ? kBlack : kWhite; }

CFont GetProportionFont(long /*size*/, double /*scale*/) { return {}; }
